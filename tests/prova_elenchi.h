#pragma once

#include "prova_principale.h"

// I codici di un elenco, come si vedono.
inline QString codici(const fmTabella *tabella)
{
    QStringList visti;
    for (int i = 0; i < griglia(tabella)->model()->rowCount(); ++i)
        visti.append(cella(tabella, i, 0));
    return visti.join(u' ');
}

// "A1 R1 V1": su che cosa si lavora.
inline QString correnti()
{
    const Contesto &ora = contesto();
    return QStringList{ora.ArchivioCorrente, ora.RegistroCorrente, ora.VoceCorrente}.join(u' ');
}

inline void lavoraSu(const QString &archivio, const QString &registro, const QString &voce)
{
    contesto().ArchivioCorrente = archivio;
    contesto().RegistroCorrente = registro;
    contesto().VoceCorrente = voce;
}

// Gli elenchi di un archivio che ha qualcosa in ogni tabella.
class ProvaElenchi : protected ProvaPrincipale
{
protected:
    void esempio(const QString &nome = u"esempio.tvd"_s)
    {
        apreEsempio(nome);
        for (
            const QString &istruzione :
            {u"INSERT INTO Individui (Codice, Voce, Nome, Ruolo) VALUES "
             "('I1', 'V1', 'Èlia', 2), ('I2', 'V3', 'Anna', 1)"_s,
             u"INSERT INTO Famiglie (Codice, Voce, Ruolo) VALUES ('F1', 'V1', 8), ('F2', 'V3', 35)"_s,
             u"INSERT INTO FamiglieConiugi VALUES ('F1', 'I1'), ('F2', 'I2')"_s,
             u"INSERT INTO Eventi (Codice, IdProprietario, Tipo) VALUES "
             "('E1', 'I1', 27), ('E2', 'F2', 18)"_s,
             u"INSERT INTO Binari (Codice, IdProprietario, Tipo, Nome, Campolungo) VALUES "
             "('B1', 'V1', 12, 'titolo', 'antico'), ('B2', 'V1', 14, 'atto.txt', x'0102')"_s})
            esegui(istruzione);
    }

    // Apre l'elenco di tutta una tabella.
    fmTabella *elenco(const QString &tabella) const
    {
        ProprietaTabella tutta;
        tutta.TipoTabella = tabella;
        tutta.Percorso = contesto().PercorsoCorrente;
        tutta.Ordinamento = tabella == u"Archivi" ? 0 : 7;
        tutta.VoceLocale = u"V1"_s;
        principale->apre(tutta);
        return ultimo();
    }

    // Sceglie una voce del menu "Tabelle" di un elenco.
    void tabelle(const fmTabella *da, int voce) const
    {
        da->menu().at(1)->actions().at(voce - 1)->trigger();
        QVERIFY(persona->finita());
        // Chi usa la tastiera si trova già nelle righe.
        QCOMPARE(principale->focusWidget(), griglia(ultimo()));
    }
};
