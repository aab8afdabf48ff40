#include "comune.h"
#include "db/archivio/custodia.h"
#include "db/lavoro/binari.h"
#include "db/lavoro/ripresa.h"
#include "db/storia/ritorno.h"

#include <random>

using storia::Passo;

// I passi di un archivio, annullati e ripetuti, contro una copia di tutte le righe presa prima.
class TestStoria : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<ArchivioDiProva> archivio;
    QList<Annuncio> annunciati;

    // Tutte le righe di tutte le tabelle, lette a parte, con la loro chiave interna e il tipo di
    // ogni valore; senza la storia, e senza ciò che le regole annotano per sé.
    QByteArray tutto() const
    {
        Aparte altra(archivio->percorso());
        QByteArray righe;
        QStringList tabelle;
        altra.leggi({u"SELECT name FROM sqlite_schema WHERE type = 'table' AND name NOT IN "
                     "('Storia', 'StoriaContenuti', 'Scomparsi', 'Orfani') ORDER BY name"_s,
                     {},
                     {}},
                    [&](const ado::Riga &riga) {
                        tabelle.append(riga.testo(0));
                        return true;
                    });
        for (const QString &tabella : std::as_const(tabelle)) {
            const bool conChiave =
                !altra.legge(u"SELECT sql FROM sqlite_schema WHERE name = ?"_s, {tabella})
                     .toString()
                     .endsWith(u"WITHOUT ROWID"_s);
            QStringList colonne;
            for (const QString &nome : altra.colonne({u"SELECT * FROM "_s + tabella, {}, {}}))
                colonne.append(u"typeof(\"%1\") || quote(\"%1\")"_s.arg(nome));
            righe += tabella.toUtf8() + '\n';
            altra.leggi(
                {u"SELECT %1%2 FROM %3 ORDER BY 1, 2"_s.arg(
                     conChiave ? u"rowid || ' ' || "_s : QString(), colonne.join(u", "_s), tabella),
                 {},
                 {}},
                [&](const ado::Riga &riga) {
                    for (int i = 0; i < riga.colonne(); ++i)
                        righe += riga.testo(i).toUtf8() + '\t';
                    righe += '\n';
                    return true;
                });
        }
        return righe;
    }

    static QString scrive(const QString &tabella, const QVariantMap &valori,
                          const QString &codice = {})
    {
        Lavoro lavoro(connessione(), u"Salvato "_s + tabella, u"O1"_s);
        const Scritto scritto = lavoro.scrive({tabella, codice, valori});
        if (!scritto.rifiuto.isEmpty())
            return {};
        lavoro.conferma();
        return scritto.codice;
    }
    static QString allega(const QString &proprietario, const QByteArray &byte)
    {
        Lavoro lavoro(connessione(), u"Aggiunta di carta.jpg"_s, u"O1"_s);
        aggiungeFile(lavoro, {14, proprietario, u"carta.jpg"_s, byte.size()})->Write(byte);
        lavoro.scrive({u"Eventi"_s, {}, {{u"IdProprietario"_s, proprietario}, {u"Tipo"_s, 20}}});
        lavoro.conferma();
        return legge(u"SELECT Codice FROM Binari ORDER BY rowid DESC"_s).toString();
    }
    static void elimina(const QString &codice)
    {
        Lavoro lavoro(connessione(), {}, u"O1"_s);
        lavoro.elimina(codice);
        lavoro.conferma();
    }
    static void annulla() { riprendeFino(connessione(), *storia::daAnnullare(connessione())); }
    static void ripete() { riprendeFino(connessione(), *storia::daRipetere(connessione())); }

    // Fa qualcosa, e guarda che l'annullamento lo disfi e la ripetizione lo rifaccia.
    void andataERitorno(const std::function<void()> &fa)
    {
        const QByteArray prima = tutto();
        fa();
        const QByteArray dopo = tutto();
        QVERIFY(prima != dopo);
        for (int volta = 0; volta < 2; ++volta) {
            annulla();
            QCOMPARE(tutto(), prima);
            ripete();
            QCOMPARE(tutto(), dopo);
        }
    }

private slots:
    void init()
    {
        storia::limiti() = {};
        archivio = std::make_unique<ArchivioDiProva>();
        esegui(u"INSERT INTO Operatori (Codice, Nome, Password) VALUES ('O1', 'Ada', 'rosa')"_s);
        annunciati.clear();
        connect(&annunci(), &Annunci::avvenuto, this,
                [this](const Annuncio &uno) { annunciati.append(uno); });
    }
    void cleanup() { disconnect(&annunci(), nullptr, this, nullptr); }

    void ogniPasso()
    {
        const QString a = scrive(u"Archivi"_s, {{u"Nome"_s, u"Busseto"_s}});
        const QString r = scrive(
            u"Registri"_s, {{u"Archivio"_s, a}, {u"Tipo"_s, 9}, {u"Titolo"_s, u"Battesimi"_s}});
        QString v;
        QString i;
        QString f;
        QString b;
        andataERitorno([&] {
            v = scrive(u"Voci"_s, {{u"Registro"_s, r}, {u"CodiceVoce"_s, u"12"_s}});
        });
        andataERitorno([&] {
            i = scrive(u"Individui"_s, {{u"Voce"_s, v}, {u"Nome"_s, u"Zoè"_s}});
        });
        andataERitorno([&] {
            scrive(u"Individui"_s, {{u"Nome"_s, u"D'Angelò"_s}, {u"Cognome"_s, {}}}, i);
        });
        andataERitorno([&] { f = scrive(u"Famiglie"_s, {{u"Voce"_s, v}, {u"Ruolo"_s, 8}}); });
        andataERitorno([&] {
            Lavoro lavoro(connessione(), u"Iscrizione"_s, u"O1"_s);
            lavoro.iscrive(Posto::Coniuge, i, f);
            lavoro.conferma();
        });
        andataERitorno([&] { scrive(u"Eventi"_s, {{u"IdProprietario"_s, i}, {u"Tipo"_s, 20}}); });
        andataERitorno([&] {
            scrive(u"Binari"_s, {{u"IdProprietario"_s, v},
                                 {u"Tipo"_s, 12},
                                 {u"Campolungo"_s, u"però «così»\nfine"_s}});
        });
        andataERitorno([&] { b = allega(v, QByteArray(3'000'000, 'x') + QByteArray("\0y", 2)); });
        andataERitorno([&] { allega(i, {}); });
        andataERitorno([&] { elimina(b); });
        andataERitorno([&] {
            Lavoro lavoro(connessione(), u"Scollegato"_s, u"O1"_s);
            lavoro.scollega(u"O1"_s, v);
            lavoro.conferma();
        });
        allega(v, "breve");
        scrive(u"Registri"_s, {{u"Archivio"_s, a}, {u"Tipo"_s, 9}, {u"Titolo"_s, u"Altro"_s}});
        andataERitorno([&] { elimina(v); });
        annulla();
        QCOMPARE(storia::daRipetere(connessione())->nome,
                 u"Eliminata la voce 12 con 1 individuo, 1 famiglia, 4 eventi, 1 testo, 2 file"_s);
        QVERIFY(annunciati.constLast().ripresa);
        QVERIFY(annunciati.constLast().dice(Cambiamento::Nuovo, u"Individui"_s));
        andataERitorno([&] { elimina(a); });
    }

    // Passi e ritorni a caso; poi tutti indietro e tutti avanti. Con TARVOLA_GUASTI quanti se ne
    // vogliono, con TARVOLA_SEME quali.
    void aCaso()
    {
        storia::limiti().minimo = qint64{1} << 30;
        storia::limiti().passi = 1'000'000;
        std::mt19937 caso(static_cast<quint32>(qEnvironmentVariableIntValue("TARVOLA_SEME")));
        const auto sorte = [&caso](int quanti) {
            return std::uniform_int_distribution<int>(0, quanti - 1)(caso);
        };
        const auto unoDi = [&](const QString &tabella) {
            const QStringList tutti = colonna(u"SELECT Codice FROM "_s + tabella);
            return tutti.isEmpty() ? QString() : tutti.at(sorte(static_cast<int>(tutti.size())));
        };
        const QByteArray inizio = tutto();
        const int passi = volte(80);
        for (int n = 0; n < passi; ++n) {
            const QString testo = u"prova %1 è"_s.arg(n);
            const QString voce = unoDi(u"Voci"_s);
            const QString chi = unoDi(u"Individui"_s);
            switch (const int che = sorte(24)) {
            case 0:
                scrive(u"Archivi"_s, {{u"Nome"_s, testo}});
                break;
            case 1:
                if (const QString a = unoDi(u"Archivi"_s); !a.isEmpty())
                    scrive(u"Registri"_s,
                           {{u"Archivio"_s, a}, {u"Tipo"_s, 9}, {u"Titolo"_s, testo}});
                break;
            case 2:
            case 3:
            case 16:
            case 17:
                if (const QString r = unoDi(u"Registri"_s); !r.isEmpty())
                    scrive(u"Voci"_s, {{u"Registro"_s, r}, {u"CodiceVoce"_s, testo}});
                break;
            case 4:
            case 5:
            case 6:
            case 21:
                if (!voce.isEmpty())
                    scrive(u"Individui"_s, {{u"Voce"_s, voce}, {u"Nome"_s, testo}});
                break;
            case 7:
                if (!voce.isEmpty())
                    scrive(u"Famiglie"_s, {{u"Voce"_s, voce}, {u"Ruolo"_s, 8}});
                break;
            case 8:
                if (const QString f = unoDi(u"Famiglie"_s); !f.isEmpty() && !chi.isEmpty()) {
                    Lavoro lavoro(connessione(), testo, u"O1"_s);
                    lavoro.iscrive(sorte(2) == 0 ? Posto::Coniuge : Posto::Figlio, chi, f);
                    lavoro.conferma();
                }
                break;
            case 9:
                if (!chi.isEmpty())
                    scrive(u"Eventi"_s, {{u"IdProprietario"_s, chi}, {u"Tipo"_s, 20}});
                break;
            case 10:
                if (!voce.isEmpty())
                    scrive(u"Binari"_s, {{u"IdProprietario"_s, voce},
                                         {u"Tipo"_s, 12},
                                         {u"Campolungo"_s, testo.repeated(sorte(200) + 1)}});
                break;
            case 11:
                if (!voce.isEmpty())
                    allega(voce, QByteArray(sorte(5000), static_cast<char>(n)));
                break;
            case 12:
            case 22:
            case 23:
            case 13:
                if (!chi.isEmpty())
                    scrive(u"Individui"_s, {{u"Cognome"_s, testo}}, chi);
                break;
            case 14:
            case 15: {
                static const QStringList quali{u"Individui"_s, u"Eventi"_s,   u"Binari"_s,
                                               u"Famiglie"_s,  u"Voci"_s,     u"Registri"_s,
                                               u"Archivi"_s,   u"Individui"_s};
                const QString quale = unoDi(quali.at(sorte(sorte(4) == 0 ? 7 : 4)));
                if (!quale.isEmpty())
                    elimina(quale);
                break;
            }
            default:
                for (int quanti = sorte(3); quanti >= 0; --quanti) {
                    if (che < 19 ? storia::daAnnullare(connessione()).has_value()
                                 : storia::daRipetere(connessione()).has_value())
                        che < 19 ? annulla() : ripete();
                }
            }
        }
        while (storia::daRipetere(connessione()))
            ripete();
        const QByteArray fine = tutto();
        const Passo primo = storia::elenco(connessione()).constLast();
        riprendeFino(connessione(), primo);
        QVERIFY(!storia::daAnnullare(connessione()));
        QCOMPARE(tutto(), inizio);
        riprendeFino(connessione(), storia::elenco(connessione()).constFirst());
        QCOMPARE(tutto(), fine);
        qInfo("%d passi e ritorni, %lld nella storia", passi,
              static_cast<long long>(storia::elenco(connessione()).size()));
    }

    // Ciò che altri hanno cambiato senza lasciarne un passo non si sovrascrive.
    void impedimenti()
    {
        esegui(u"INSERT INTO Voci (Codice, Registro, Volume) VALUES ('V1', 'R1', 'I')"_s);
        const QString i = scrive(u"Individui"_s, {{u"Voce"_s, u"V1"_s}, {u"Nome"_s, u"Ada"_s}});
        const auto impedito = [&](const QString &istruzione, const QString &quale) {
            esegui(istruzione);
            const QByteArray prima = tutto();
            QVERIFY(errore([] { annulla(); }).testo().contains(quale));
            QCOMPARE(tutto(), prima);
            QVERIFY(storia::daAnnullare(connessione()));
        };
        impedito(u"UPDATE Individui SET Cognome = 'Rossi'"_s, u"I1"_s);
        esegui(u"UPDATE Individui SET Cognome = NULL"_s);
        impedito(u"INSERT INTO Eventi (Codice, IdProprietario, Tipo) VALUES ('E7', 'I1', 20)"_s,
                 u"E7"_s);
        elimina(i);
        impedito(u"INSERT INTO Individui (Codice, Voce, Nome) VALUES ('I1', 'V1', 'Eva')"_s,
                 u"I1"_s);
    }

    void limiti()
    {
        storia::limiti().minimo = 3000;
        storia::limiti().parteDelFile = 1'000'000;
        for (int n = 0; n < 64; ++n)
            scrive(u"Archivi"_s, {{u"Nome"_s, u"Archivio %1"_s.arg(n)}});
        QVERIFY(storia::elenco(connessione()).size() < 40);
        QVERIFY(storia::elenco(connessione()).size() > 5);
        // Troppo grande: lo dice prima, e nulla è cambiato; chi vuole la fa senza poi annullarla.
        const QByteArray prima = tutto();
        storia::limiti().contenuti = 10;
        const QString b = allega(u"A1"_s, QByteArray(100, 'z'));
        const auto toglie = [](bool senza) {
            Lavoro lavoro(connessione());
            if (senza)
                lavoro.senzaStoria();
            lavoro.elimina(u"A1"_s);
            lavoro.conferma();
        };
        bool troppo = false;
        try {
            toglie(false);
        } catch (const storia::TroppoGrande &) {
            troppo = true;
        }
        QVERIFY(troppo);
        QCOMPARE(legge(u"SELECT length(Campolungo) FROM Binari WHERE Codice = ?"_s, {b}), 100);
        annulla();
        QCOMPARE(tutto(), prima);
        ripete();
        const auto passi = storia::elenco(connessione()).size();
        toglie(true);
        QCOMPARE(storia::elenco(connessione()).size(), passi);
        QCOMPARE(righe(u"StoriaContenuti"_s), 0);
        storia::svuota(connessione());
        QVERIFY(storia::elenco(connessione()).isEmpty());
        QFile file(archivio->percorso());
        QVERIFY(file.open(QIODevice::ReadOnly));
        QVERIFY(!file.readAll().contains(QByteArray(100, 'z')));
    }

    // Le copie non portano i passi, né ciò che era stato eliminato; l'archivio li tiene.
    void copie()
    {
        const QString a = scrive(u"Archivi"_s, {{u"Nome"_s, u"Segretissimo"_s}});
        allega(a, QByteArray(200'000, 'q'));
        elimina(a);
        const QByteArray prima = tutto();
        const auto passo = [](qint64, qint64) { return true; };
        copiaArchivio(archivio->percorso(), archivio->accanto(u"copia.tvd"_s), passo);
        QCOMPARE(righe(u"Storia"_s), 3);
        QFile copia(archivio->accanto(u"copia.tvd"_s));
        QVERIFY(copia.open(QIODevice::ReadOnly));
        const QByteArray byte = copia.readAll();
        QVERIFY(!byte.contains("Segretissimo") && !byte.contains("qqqq") && byte.size() < 400'000);
        QVERIFY(!Aparte(copia.fileName())
                     .legge(u"SELECT 1 FROM sqlite_schema WHERE name LIKE "
                            "'Storia%'"_s)
                     .isValid());
        connessione().Close();
        QVERIFY(compattaArchivio(archivio->percorso(), archivio->accanto(u"Cestino"_s), passo)
                    .conPassi);
        ApriArchivio(archivio->percorso());
        QVERIFY(!storia::presente(connessione()));
        QVERIFY(storia::elenco(connessione()).isEmpty());
        QCOMPARE(tutto(), prima);
    }

    // Un lavoro interno fallito non lascia nulla nel passo di quello che continua.
    void annidati()
    {
        const QByteArray prima = tutto();
        {
            Lavoro fuori(connessione(), u"Fuori"_s, u"O1"_s);
            fuori.scrive({u"Archivi"_s, {}, {{u"Nome"_s, u"Uno"_s}}});
            {
                Lavoro dentro(connessione());
                dentro.scrive({u"Archivi"_s, {}, {{u"Nome"_s, u"Due"_s}}});
            }
            fuori.conferma();
        }
        QCOMPARE(righe(u"Archivi"_s), 1);
        annulla();
        QCOMPARE(tutto(), prima);
        scrive(u"Archivi"_s, {{u"Nome"_s, u"Tre"_s}});
        QVERIFY(!storia::daRipetere(connessione()));
    }
};

QTEST_GUILESS_MAIN(TestStoria)
#include "tst_storia.moc"
