#include "db/archivio/salvati.h"
#include "db/lavoro/codici.h"
#include "db/schema/schema.h"
#include "prova_custodia.h"

#include <QRandomGenerator>
#include <QtEndian>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

// Da un archivio danneggiato si salva tutto ciò che si legge ancora.
class TstSalvataggio : public QObject, ProvaCustodia
{
    Q_OBJECT

private slots:
    void initTestCase() { prepara(); }
    void init() { comincia(); }

    // Le pagine del file, una per volta, vuote o piene di byte a caso: alcune, e tutte quando ci si
    // va fino in fondo.
    void salvaDaOgniPaginaRotta_data()
    {
        QTest::addColumn<int>("modo");
        QTest::newRow("vuota") << 0;
        QTest::newRow("a caso") << 1;
        QTest::newRow("di un'altra tabella") << 2;
    }

    void salvaDaOgniPaginaRotta()
    {
        QFETCH(int, modo);
        QRandomGenerator caso(7);
        const auto pagine = static_cast<int>(m_sano.size() / 4096);
        const int salto = volte(0) >= 300 ? 1 : 4;
        for (int pagina = 0; pagina<pagine; pagina += pagina> 55 ? 45 * salto
                             : modo == 0                         ? salto
                                                                 : 3 * salto) {
            QByteArray rotto = m_sano;
            for (int i = 0; i < 4096; ++i)
                rotto[pagina * 4096 + i] =
                    modo == 0   ? '\0'
                    : modo == 1 ? static_cast<char>(caso.bounded(256))
                                : m_sano.at((pagina + 1 + pagina % 7) % pagine * 4096 + i);
            scrive(m_percorso, rotto);
            // Una coppia copiata da un'altra tabella di coppie non si distingue dalle sue.
            verificaSalvato(qPrintable(u"pagina %1"_s.arg(pagina + 1)), modo == 2);
        }
    }

    void salvaDaUnFileTronco()
    {
        for (qsizetype resta = 4096; resta < m_sano.size(); resta += 97 * 1000) {
            scrive(m_percorso, m_sano.left(resta));
            verificaSalvato(qPrintable(u"%1 byte"_s.arg(resta)));
        }
    }

    // Una pagina viva finita al posto di una libera, e questa al suo: tornano le righe vive, e non
    // quelle cancellate.
    void ritrovaUnaPaginaVivaFraLeLibere()
    {
        const auto numeroIn = [this](qsizetype dove) {
            return qFromBigEndian<quint32>(m_sano.constData() + dove);
        };
        const qsizetype tronco = numeroIn(32) - 1;
        for (const qsizetype libera : {tronco, qsizetype{numeroIn(tronco * 4096 + 8)} - 1}) {
            const qsizetype viva = m_sano.indexOf("Borgo 5") / 4096;
            QByteArray rotto = m_sano;
            rotto.replace(viva * 4096, 4096, m_sano.mid(libera * 4096, 4096));
            rotto.replace(libera * 4096, 4096, m_sano.mid(viva * 4096, 4096));
            scrive(m_percorso, rotto);
            QVERIFY(compattaArchivio(m_percorso, cestino(), avanti).riparato);
            QCOMPARE(righeDi(m_percorso).value(u"Eventi"_s), m_prima.value(u"Eventi"_s));
        }
    }

    // Un bit nella testa di una riga: il tipo dell'ultima colonna, vuota; la chiave, che diventa
    // quella di un'altra. Le due righe restano ciascuna col suo codice.
    void ritrovaLaRigaConLaTestaRovinata()
    {
        constexpr qsizetype testa = 11;
        const qsizetype riga = m_sano.indexOf("E12I");
        QCOMPARE(m_sano.at(riga - testa), char{testa});
        QCOMPARE(m_sano.at(riga - testa - 1), char{12});
        for (const auto &[dove, bit] : {std::pair{riga - 1, 2}, {riga - testa - 1, 32}}) {
            QByteArray rotto = m_sano;
            rotto[dove] = static_cast<char>(rotto.at(dove) ^ bit);
            scrive(m_percorso, rotto);
            QVERIFY(compattaArchivio(m_percorso, cestino(), avanti).riparato);
            QCOMPARE(righeDi(m_percorso).value(u"Eventi"_s), m_prima.value(u"Eventi"_s));
        }
    }

    // Delle coppie si ritrovano le pagine anche quando più nulla porta a loro.
    void ritrovaLeCoppieSenzaRadice()
    {
        QByteArray rotto = m_sano;
        // Senza schema nessuna pagina si sa di chi è.
        const auto pagine = static_cast<quint32>(rotto.size() / 4096);
        for (quint32 numero = 1; numero <= pagine; ++numero) {
            if (rotto.mid((numero - 1) * 4096, 4096).contains("CREATE "))
                rotto.replace((numero - 1) * 4096, 4096, QByteArray(4096, '\0'));
        }
        scrive(m_percorso, rotto);
        QVERIFY(compattaArchivio(m_percorso, cestino(), avanti).riparato);
        const auto dopo = righeDi(m_percorso);
        for (const QString &tabella :
             {u"FamiglieConiugi"_s, u"FamiglieGenitori"_s, u"OperatoriContesti"_s, u"Voci"_s})
            QCOMPARE(dopo.value(tabella), m_prima.value(tabella));
    }

    // Un record nuovo non eredita ciò che una riga salvata dice di uno perduto.
    void iCodiciNuoviNonSonoDiNessuno()
    {
        // Restano eventi, coppie e testi degli individui, ma nessun individuo né il suo indice.
        Aparte(m_percorso)
            .esegui(u"UPDATE Binari SET IdProprietario = 'I998' WHERE Codice = 'B2'"_s);
        rompe({"Individui", "sqlite_autoindex_Individui_1", "IndividuiNumero"});
        QVERIFY(compattaArchivio(m_percorso, cestino(), avanti).riparato);
        ApriArchivio(m_percorso);
        QCOMPARE(NuovoCodice(connessione(), u"Individui"_s), u"I999"_s);
        QCOMPARE(NuovoCodice(connessione(), u"Voci"_s), u"V61"_s);
        // E così resta anche dopo un'altra compattazione.
        connessione().Close();
        compattaArchivio(m_percorso, cestino(), avanti);
        ApriArchivio(m_percorso);
        QCOMPARE(NuovoCodice(connessione(), u"Individui"_s), u"I999"_s);
    }

    // Una testata con un bit rovinato non nasconde righe, e un archivio senza versione è guasto.
    void salvaConLaTestataRotta_data()
    {
        QTest::addColumn<int>("posto");
        QTest::addColumn<int>("byte");
        QTest::newRow("byte riservati") << 20 << 32;
        QTest::newRow("pagine doppie") << 16 << 0x20;
        QTest::newRow("pagine mezze") << 16 << 0x08;
        QTest::newRow("versione 0") << 63 << 0;
        QTest::newRow("versione 33") << 63 << 33;
        QTest::newRow("formato dello schema") << 47 << 5;
        QTest::newRow("contrassegno") << 68 << 0;
        QTest::newRow("password") << static_cast<int>(m_sano.indexOf("password")) + 10 << int{'z'};
    }

    void salvaConLaTestataRotta()
    {
        QFETCH(int, posto);
        QFETCH(int, byte);
        QByteArray rotto = m_sano;
        rotto[posto] = static_cast<char>(byte);
        scrive(m_percorso, rotto);
        const ado::Errore rifiuto =
            errore([&] { copiaArchivio(m_percorso, accanto(u"c.tvd"_s), avanti); });
        QVERIFY(rifiuto.causa() != ado::Causa::PasswordErrata && !rifiuto.testo().isEmpty());
        QVERIFY(!QFileInfo::exists(accanto(u"c.tvd"_s)));
        // Chi non riesce ad aprirlo sa con che comando si ripara; di un altro file no.
        QVERIFY(siSalverebbe(m_percorso, ado::Causa::Danneggiato));
        scrive(accanto(u"altro.tvd"_s), QByteArray(9000, 'x'));
        QVERIFY(!siSalverebbe(accanto(u"altro.tvd"_s), ado::Causa::NonArchivio));
        QVERIFY(compattaArchivio(m_percorso, cestino(), avanti).riparato);
        QCOMPARE(righeDi(m_percorso), m_prima);
        ApriArchivio(m_percorso);
    }

    // Mentre il file si legge senza il motore, i blocchi del motore restano.
    void nessunoScriveMentreSiSalva()
    {
        rompe({"Voci"});
        const QByteArray nome = QFile::encodeName(m_percorso);
        int volte = 0;
        int sciolti = 0;
        const auto guarda = [&](qint64, qint64) {
            if (volte++ % 3 != 0)
                return true;
            const pid_t altro = ::fork();
            if (altro == 0) {
                struct flock blocco = {};
                blocco.l_type = F_WRLCK;
                blocco.l_start = 0x40000001; // il byte di chi sta per scrivere
                blocco.l_len = 1;
                const int file = ::open(nome.constData(), O_RDWR);
                ::_exit(::fcntl(file, F_GETLK, &blocco) == 0 && blocco.l_type != F_UNLCK ? 0 : 1);
            }
            int stato = 0;
            ::waitpid(altro, &stato, 0);
            sciolti += stato == 0 ? 0 : 1;
            return true;
        };
        QVERIFY(compattaArchivio(m_percorso, cestino(), guarda).riparato);
        QVERIFY(volte > 10);
        QCOMPARE(sciolti, 0);
    }

    // Chi ha perduto il proprietario sarà tolto alla prossima eliminazione: si dice prima.
    void contaChiHaPersoIlProprietario()
    {
        rompe({"Voci", "sqlite_autoindex_Voci_1", "VociNumero"});
        const Compattato esito = compattaArchivio(m_percorso, cestino(), avanti);
        const auto dopo = righeDi(m_percorso);
        QVERIFY(esito.riparato && dopo.value(u"Voci"_s).size() < 60);
        ApriArchivio(m_percorso);
        const QString senza =
            u"(SELECT count(*) FROM %1 WHERE %2 NOT IN (SELECT Codice FROM Voci))"_s;
        const qint64 attesi =
            legge(u"SELECT %1 + %2 + %3"_s.arg(senza.arg(u"Individui"_s, u"Voce"_s),
                                               senza.arg(u"Famiglie"_s, u"Voce"_s),
                                               senza.arg(u"Binari"_s, u"IdProprietario"_s)))
                .toLongLong();
        QVERIFY(attesi > 0);
        QCOMPARE(esito.senzaProprietario, attesi);
    }

private:
    // Copre la prima pagina di ogni tabella o indice.
    void rompe(std::initializer_list<const char *> alberi) const
    {
        QByteArray rotto = byteDi(m_percorso);
        {
            Aparte archivio(m_percorso);
            for (const char *albero : alberi) {
                const qint64 radice =
                    archivio
                        .legge(u"SELECT rootpage FROM sqlite_schema WHERE name = ?"_s,
                               {QString::fromUtf8(albero)})
                        .toLongLong();
                rotto.replace((radice - 1) * 4096, 4096, QByteArray(4096, 'x'));
            }
        }
        scrive(m_percorso, rotto);
    }

    // Compatta il file rotto: ogni riga che il motore rende ancora dev'essere nel nuovo, nessuna
    // cancellata ne torna, e le perdite contate sono quelle.
    void verificaSalvato(const char *dove, bool conCopie = false)
    {
        QDir(cestino()).removeRecursively();
        const auto ancora = campione::leggibili(m_percorso, m_prima);
        Compattato esito;
        try {
            esito = compattaArchivio(m_percorso, cestino(), avanti);
        } catch (const ado::Errore &errore) {
            QCOMPARE(errore.causa(), ado::Causa::Danneggiato);
            for (const campione::Righe &righe : ancora)
                QVERIFY2(righe.isEmpty(), dove);
            return;
        }
        const auto dopo = righeDi(m_percorso);
        for (const QString &tabella : tabelle()) {
            const bool coppie = tabella.size() > 10 && conCopie;
            const qint64 perse = campione::mancano(ancora.value(tabella), dopo.value(tabella));
            QVERIFY2(perse == 0, qPrintable(u"%1: %2 di %3"_s.arg(dove).arg(perse).arg(tabella)));
            const auto conto =
                std::find_if(esito.mancanti.cbegin(), esito.mancanti.cend(),
                             [&](const salvataggio::Conto &uno) { return uno.tabella == tabella; });
            const qint64 detto = conto == esito.mancanti.cend() ? 0 : conto->perdute;
            const bool almeno = conto != esito.mancanti.cend() && conto->almeno;
            const qint64 vere = m_prima.value(tabella).size() - dopo.value(tabella).size();
            QVERIFY2(
                coppie || detto == vere || (almeno && detto <= vere),
                qPrintable(u"%1: %2 dette %3, vere %4"_s.arg(dove, tabella).arg(detto).arg(vere)));
            if (coppie)
                continue;
            for (auto riga = dopo.value(tabella).cbegin(); riga != dopo.value(tabella).cend();
                 ++riga)
                QVERIFY2(m_prima.value(tabella).contains(riga.key()),
                         qPrintable(u"%1: torna %2"_s.arg(dove, riga.key())));
        }
    }
};

QTEST_GUILESS_MAIN(TstSalvataggio)
#include "tst_salvataggio.moc"
