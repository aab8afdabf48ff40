#pragma once

#include <QString>
#include <QStringView>

// Il testo ridotto a ciò che conta quando si cerca: senza maiuscole, senza accenti e altri segni
// sulle lettere (Unicode, scomposizione canonica NFD senza segni combinatori), con gli apostrofi e
// ogni altro segno che non è lettera o cifra resi spazi. Le lunghezze possono cambiare.
namespace italiano
{

// "Niccolò dell'Acqua" → "niccolo dell acqua".
QString piegato(QStringView testo);

} // namespace italiano
