#pragma once

#include "demo/esempi.h"
#include "demo/mani.h"

// Il lavoro del trascrittore, dal file nuovo alla chiusura del programma.
class Copione
{
public:
    // Gli atti e le mani devono vivere più a lungo del copione.
    Copione(Mani &mani, const std::vector<esempi::Archivio> &archivi, QString cartella);

    // Crea esempi.tvd nella cartella, vi trascrive gli atti e chiude il programma; lancia Guasto.
    Passo recita();

    // Vero dall'ultimo clic in poi: quello chiude il programma, e il copione con lui.
    bool finito() const { return m_finito; }
    // Il percorso del file creato.
    QString percorso() const;

private:
    using Eventi = std::vector<esempi::Evento>;

    Passo creaFile();
    Passo sostituisce();
    Passo creaArchivi();
    Passo trascriveArchivio(const esempi::Archivio &archivio, bool ultimo);
    Passo creaRegistro(const esempi::Registro &registro);
    Passo trascriveAtto(const esempi::Registro &registro, const esempi::Atto &atto);
    Passo provaSenzaGenere();
    Passo scriveIndividuo(const esempi::Individuo &individuo);
    Passo compilaIndividuo(const esempi::Individuo &individuo);
    Passo scriveFamiglia(const esempi::Famiglia &famiglia);
    Passo scriveEventi(const Eventi &eventi);
    Passo scriveTesto(const esempi::Atto &atto);
    Passo sbagliaData();
    Passo nuovoCollegamento(QString genere, QString finestra);
    Passo elencaPersone();
    Passo chiudeProgramma();

    QString scrittura(const QString &data);
    void racconta(const esempi::Registro &registro, const esempi::Atto &atto,
                  qint64 millisecondi) const;

    Mani &m_mani;
    const std::vector<esempi::Archivio> &m_archivi;
    QString m_cartella;
    int m_date = 0;
    int m_atti = 0;
    bool m_dataSbagliata = false;
    bool m_finito = false;
};
