#pragma once

#include "demo/esempi.h"
#include "demo/scena.h"

#include <QMap>

// Gli stessi atti, scritti ciascuno sulla sua pagina coi soli tasti, in un file loro.
class Pagine : public Scena
{
public:
    // Gli atti e le mani devono vivere più a lungo della scena.
    Pagine(Mani &mani, const std::vector<esempi::Archivio> &archivi, const QString &cartella);

    // Crea pagine.tvd nella cartella e vi scrive gli atti; lancia Guasto.
    Passo recita();

private:
    using Caselle = QMap<QString, QString>;

    void preparaRegistri() const;
    Passo apreRegistro(QString archivio, QString registro);
    Passo scriveAtto(const esempi::Registro &registro, const esempi::Atto &atto);
    Passo scriveCasella(QWidget *casella, QString testo);
    Passo lasciaCasella(QWidget *casella);

    const std::vector<esempi::Archivio> &m_archivi;
    int m_date = 0;
};
