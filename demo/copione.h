#pragma once

#include "demo/esempi.h"
#include "demo/scena.h"

// Gli atti trascritti, dal file nuovo all'elenco delle persone.
class Copione : public Scena
{
public:
    // Gli atti e le mani devono vivere più a lungo del copione.
    Copione(Mani &mani, const std::vector<esempi::Archivio> &archivi, const QString &cartella);

    // Crea esempi.tvd nella cartella e vi trascrive gli atti; lancia Guasto.
    Passo recita();

private:
    using Eventi = std::vector<esempi::Evento>;

    Passo creaArchivi();
    Passo trascriveArchivio(const esempi::Archivio &archivio, bool ultimo);
    Passo creaRegistro(const esempi::Registro &registro);
    Passo trascriveAtto(const esempi::Registro &registro, const esempi::Atto &atto);
    Passo provaSenzaGenere();
    Passo scriveIndividuo(const esempi::Individuo &individuo);
    Passo compilaIndividuo(const esempi::Individuo &individuo);
    Passo scriveFamiglia(const esempi::Famiglia &famiglia);
    Passo scriveEventi(const Eventi &eventi);
    Passo scriveTesto(QString genere, QString testo);
    Passo sbagliaData();
    Passo elencaPersone();

    QString scrittura(const QString &data);
    void racconta(const esempi::Registro &registro, const esempi::Atto &atto,
                  qint64 millisecondi) const;

    const std::vector<esempi::Archivio> &m_archivi;
    int m_date = 0;
    int m_atti = 0;
    bool m_dataSbagliata = false;
};
