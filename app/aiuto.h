#pragma once

#include "app/menu.h"

#include <QString>
#include <QWidget>

// Il menu Aiuto: la guida, la pagina del programma, la posta all'assistenza.
namespace modTarvola
{

// Esegue la voce del menu. Dove manca la guida non accade nulla; dove manca il programma per la
// rete o la posta lo dice, appena il desktop lo fa sapere.
void ComandoAiuto(QWidget *sopra, VoceAiuto voce);

// Mostra una pagina della guida.
void MostraGuida(QWidget *sopra, const QString &pagina);
// La descrizione del computer: il sistema e la memoria, una riga ciascuno, con righe CR LF.
QString InfoSistema();
// Un numero di byte in kilobyte, all'italiana: esatto, con la virgola, senza separare le migliaia.
QString InKilobyte(quint64 byte);

// Il testo con ogni coppia CR LF resa "%0D%0A"; null'altro cambia.
QString CodificaACapo(const QString &testo);
// Il collegamento "mailto:" (RFC 6068) con i soli campi non vuoti. Tranne gli a capo del corpo, i
// testi vi entrano come sono.
QString CollegamentoPosta(const QString &indirizzo, const QString &oggetto, const QString &corpo,
                          const QString &copia, const QString &copiaNascosta);
// Apre il collegamento col programma di posta; se il desktop non ne ha uno lo dice. Falso se lo si
// sa già.
bool ApriPostaElettronica(QWidget *sopra, const QString &indirizzo, const QString &oggetto,
                          const QString &corpo, const QString &copia, const QString &copiaNascosta);

} // namespace modTarvola
