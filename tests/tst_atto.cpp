#include "comune.h"
#include "db/atto/registro_atti.h"
#include "db/atto/scheda_atto.h"

using scheda::SchedaAtto;

// L'atto come un valore, e la pagina attraverso cui si scrive.
class TestAtto : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<ArchivioDiProva> archivio;

    // Scrive "posto[n]/evento.campo=valore" una dopo l'altra in un atto nuovo del registro.
    static SchedaAtto pagina(const QString &registro, const QStringList &caselle,
                             std::optional<Atto> atto = {})
    {
        const Atto suo = atto ? *atto : nuovoAtto(connessione(), registro);
        SchedaAtto scritta(*scheda::diTipo(suo.tipo), suo);
        for (const QString &casella : caselle) {
            static const QRegularExpression forma(u"^(\\w+?)(\\d*)(?:/(\\d+))?\\.(\\w+)=(.*)$"_s,
                                                  QRegularExpression::UseUnicodePropertiesOption);
            const auto parti = forma.match(casella);
            scritta.assegna({parti.captured(1), parti.captured(2).toInt(),
                             parti.captured(3).toInt(), parti.captured(4)},
                            parti.captured(5));
        }
        return scritta;
    }
    static EsitoAtto scrive(const SchedaAtto &pagina, const Atto &prima = {})
    {
        Atto pronto = pagina.pronto().atto;
        return scriveAtto(connessione(), {}, prima, pronto);
    }
    // Ogni riga di ogni tabella che un atto tocca, senza date di servizio.
    static QStringList tutto()
    {
        return colonna(
            u"SELECT 'V '||Codice||' '||Registro||' '||quote(Volume)||quote(Data)||"
            "quote(PaginaIniziale)||quote(CodiceVoce)||quote(Modifica) FROM Voci "
            "UNION ALL SELECT 'I '||Codice||' '||quote(Voce)||' '||quote(Ruolo)||' '||"
            "quote(Nome)||quote(Cognome)||quote(Sesso)||quote(Detto)||quote(Modifica) "
            "FROM Individui UNION ALL SELECT 'F '||Codice||' '||quote(Voce)||Ruolo||"
            "quote(Modifica) FROM Famiglie "
            "UNION ALL SELECT 'C '||CodiceFamiglia||CodiceIndividuo FROM FamiglieConiugi "
            "UNION ALL SELECT 'G '||CodiceFamiglia||CodiceIndividuo FROM "
            "FamiglieGenitori UNION ALL SELECT 'E '||Codice||' '||IdProprietario||' '||"
            "Tipo||quote(Data)||quote(Ora)||quote(Luogo)||quote(Modifica) FROM Eventi "
            "UNION ALL SELECT 'B '||Codice||' '||IdProprietario||Tipo||"
            "quote(Campolungo) FROM Binari ORDER BY 1"_s);
    }
    // Le stesse righe senza la data della modifica, di un archivio in cui sono tutte nuove.
    static QString forma()
    {
        return colonna(u"SELECT Codice||' '||Ruolo||' '||Nome||coalesce(' '||Sesso, '') FROM "
                       "Individui UNION ALL SELECT Codice||' '||Ruolo||' '||(SELECT "
                       "group_concat(CodiceIndividuo) FROM FamiglieConiugi WHERE CodiceFamiglia = "
                       "Codice)||coalesce(' '||(SELECT group_concat(CodiceIndividuo) FROM "
                       "FamiglieGenitori WHERE CodiceFamiglia = Codice), '') FROM Famiglie "
                       "UNION ALL SELECT IdProprietario||' '||Tipo||' '||coalesce(Data, '')||"
                       "coalesce(Ora, '') FROM Eventi ORDER BY 1"_s)
            .join(u"; ");
    }

private slots:
    void init()
    {
        archivio = std::make_unique<ArchivioDiProva>();
        esegui(u"INSERT INTO Registri (Codice, Tipo, Titolo) VALUES ('R1', 9, 'Battesimi'), "
               "('R2', 10, 'Matrimoni'), ('R3', 11, 'Morti')"_s);
    }

    // Ciò che la pagina scrive è ciò che avrebbero scritto gli editori.
    void scritto_data()
    {
        QTest::addColumn<QString>("registro");
        QTest::addColumn<QStringList>("caselle");
        QTest::addColumn<QString>("attese");
        QTest::newRow("battesimo")
            << u"R1"_s << QStringList{u"voce.CodiceVoce=1"_s,  u"battezzato.Nome=Zoè"_s,
                                      u"battezzato.Sesso=F"_s, u"battezzato/20.Data=1750-03-04"_s,
                                      u"madre.Nome=Anna"_s,    u"padre.Nome=Carlo"_s,
                                      u"padrini0.Nome=Pio"_s,  u"padrini1.Nome=Eva"_s,
                                      u"altre0.Nome=Ugo"_s}
            << u"F1 35 I2,I3 I1; I1 1 Zoè F; I1 20 1750-03-04; I2 37 Anna F; I3 36 Carlo M; "
               "I4 34 Pio; I5 34 Eva; I6 40 Ugo"_s;
        QTest::newRow("matrimonio, la sposa prima")
            << u"R2"_s
            << QStringList{u"voce.CodiceVoce=1"_s, u"sposa.Nome=Eva"_s, u"padre_sposa.Nome=Pio"_s,
                           u"sposo.Nome=Ugo"_s, u"coppia/18.Data=1750-03-04"_s}
            << u"F1 18 1750-03-04; F1 8 I1,I3; F2 35 I2 I1; I1 7 Eva F; I2 36 Pio M; I3 2 Ugo M"_s;
        QTest::newRow("la sposa sola")
            << u"R2"_s << QStringList{u"voce.CodiceVoce=1"_s, u"sposa.Nome=Eva"_s}
            << u"I1 3 Eva F"_s;
        QTest::newRow("morte, col marito")
            << u"R3"_s << QStringList{u"voce.CodiceVoce=1"_s,    u"coniuge.Nome=Ugo"_s,
                                      u"defunto.Nome=Eva"_s,     u"defunto.Sesso=F"_s,
                                      u"testimoni0.Cognome= "_s, u"defunto/27.Luogo="_s}
            << u"F1 8 I1,I2; I1 6 Ugo M; I2 4 Eva F"_s;
    }
    void scritto()
    {
        QFETCH(QString, registro);
        QFETCH(QStringList, caselle);
        const SchedaAtto nuovo = pagina(registro, caselle);
        QCOMPARE(nuovo.pronto().motivo, QString());
        QCOMPARE(scrive(nuovo).che, EsitoAtto::Scritto);
        QTEST(forma(), "attese");
        // Riletto, si ritrova nelle stesse caselle.
        const SchedaAtto riletto(nuovo.scheda(), *leggeAtto(connessione(), u"V1"_s));
        for (const QString &casella : caselle) {
            if (casella.section(u'=', 1).trimmed().isEmpty())
                continue;
            const QString posto = casella.section(u'.', 0, 0).section(u'/', 0, 0);
            QVERIFY2(riletto.persona(posto.chopped(posto.back().isDigit() ? 1 : 0)) != 0 ||
                         posto == u"voce"_s || posto == u"coppia"_s,
                     qPrintable(posto));
        }
    }

    // Chi dipende da un altro non si scrive senza di lui, e si dice dove.
    void manca()
    {
        const auto senzaFiglio =
            pagina(u"R1"_s, {u"voce.Volume=1"_s, u"padre.Nome=Pio"_s}).pronto();
        QCOMPARE(senzaFiglio.dove.posto, u"battezzato"_s);
        const auto senzaSesso =
            pagina(u"R3"_s, {u"voce.Volume=1"_s, u"defunto.Nome=Eva"_s, u"coniuge.Nome=Ugo"_s})
                .pronto();
        QCOMPARE(senzaSesso.dove.campo, u"Sesso"_s);
        QVERIFY(senzaSesso.motivo.startsWith(u"Per creare una famiglia"_s));
    }

    // La coppia sta nel file in quattro modi, e nella pagina in uno.
    void coppia_data()
    {
        QTest::addColumn<int>("lui");
        QTest::addColumn<int>("lei");
        QTest::addColumn<bool>("famiglia");
        QTest::newRow("la moglie nella famiglia dello sposo") << 2 << 7 << true;
        QTest::newRow("il marito nella famiglia della sposa") << 6 << 3 << true;
        QTest::newRow("tutti e due nella voce") << 2 << 3 << false;
        QTest::newRow("tutti e due nella voce e nella famiglia") << 2 << 3 << true;
    }
    void coppia()
    {
        QFETCH(int, lui);
        QFETCH(int, lei);
        QFETCH(bool, famiglia);
        esegui(u"INSERT INTO Voci (Codice, Registro, Volume) VALUES ('V1', 'R2', 'I')"_s);
        esegui(u"INSERT INTO Individui (Codice, Voce, Nome, Ruolo) VALUES ('I1', 'V1', 'Eva', ?), "
               "('I2', 'V1', 'Ugo', ?)"_s,
               {lei, lui});
        if (famiglia) {
            esegui(u"INSERT INTO Famiglie (Codice, Voce, Ruolo) VALUES ('F1', 'V1', 8)"_s);
            esegui(u"INSERT INTO FamiglieConiugi VALUES ('F1', 'I1'), ('F1', 'I2')"_s);
            esegui(u"INSERT INTO Eventi (Codice, IdProprietario, Tipo, Luogo) VALUES "
                   "('E1', 'F1', 18, 'Roma')"_s);
        }
        const Atto atto = *leggeAtto(connessione(), u"V1"_s);
        SchedaAtto letta = pagina(u"R2"_s, {u"sposa.Detto=Bella"_s}, atto);
        QCOMPARE(letta.valore({u"sposo"_s, 0, 0, u"Nome"_s}), u"Ugo"_s);
        QCOMPARE(letta.valore({u"sposa"_s, 0, 0, u"Nome"_s}), u"Eva"_s);
        QCOMPARE(letta.valore({u"coppia"_s, 0, 18, u"Luogo"_s}).isValid(), famiglia);
        QCOMPARE(letta.quante(u"altre"_s), 0);
        QCOMPARE(scrive(letta, atto).che, EsitoAtto::Scritto);
        QCOMPARE(colonna(u"SELECT Codice || Ruolo FROM Individui WHERE Detto = 'Bella'"_s),
                 QStringList{u"I1%1"_s.arg(lei)});
        if (!famiglia)
            return;
        // Anche quando di un atto si corregge soltanto l'evento della coppia.
        const Atto ora = *leggeAtto(connessione(), u"V1"_s);
        const SchedaAtto corretta = pagina(u"R2"_s, {u"coppia/18.Luogo=Parma"_s}, ora);
        QCOMPARE(scrive(corretta, ora).che, EsitoAtto::Scritto);
        QCOMPARE(colonna(u"SELECT Luogo FROM Eventi"_s), QStringList{u"Parma"_s});
    }

    // Aperto e registrato senza toccarlo, un atto non cambia una riga, comunque sia fatto.
    void giro()
    {
        esegui(u"INSERT INTO Voci (Codice, Registro, Data) VALUES ('V1', 'R1', '1750-01-01'), "
               "('V2', 'R2', NULL), ('V3', 'R3', 'quando piovve')"_s);
        QString persone;
        for (int i = 0; i < 60; ++i)
            persone += u"%1('I%2', %3, %4, '', ' ', %5)"_s.arg(i == 0 ? u""_s : u","_s)
                           .arg(i + 1)
                           .arg(i % 7 == 6 ? u"NULL"_s : u"'v%1'"_s.arg(i % 3 + 1))
                           .arg(i % 5 == 0 ? u"NULL"_s : u"'N''%1'"_s.arg(i))
                           .arg(i % 9 == 8 ? u"NULL"_s : QString::number(i % 8 + 1 + (i % 4) * 10));
        esegui(u"INSERT INTO Individui (Codice, Voce, Nome, Cognome, Detto, Ruolo) VALUES "_s +
               persone);
        for (int i = 1; i <= 20; ++i) {
            esegui(u"INSERT INTO Famiglie (Codice, Voce, Ruolo) VALUES (?, ?, ?)"_s,
                   {u"F%1"_s.arg(i), i % 4 == 0 ? QVariant() : u"V%1"_s.arg(i % 3 + 1),
                    i % 2 == 0 ? 8 : 35});
            for (int j = 0; j < i % 4; ++j) {
                esegui(u"INSERT OR IGNORE INTO FamiglieConiugi VALUES (?, ?)"_s,
                       {u"F%1"_s.arg(i), u"I%1"_s.arg(i * 3 + j)});
                esegui(u"INSERT OR IGNORE INTO FamiglieGenitori VALUES (?, ?)"_s,
                       {u"F%1"_s.arg(i), u"I%1"_s.arg((i * 7 + j) % 60 + 1)});
            }
            esegui(u"INSERT INTO Eventi (Codice, IdProprietario, Tipo, Data, Ora) VALUES "
                   "(?, ?, ?, ?, ' ')"_s,
                   {u"E%1"_s.arg(i), i % 3 == 0 ? u"F%1"_s.arg(i) : u"I%1"_s.arg(i), 17 + i,
                    i % 2 == 0 ? u"1750"_s : u"1750-02-03"_s});
            esegui(u"INSERT INTO Binari (Codice, IdProprietario, Tipo, Campolungo) VALUES "
                   "(?, ?, ?, ?)"_s,
                   {u"B%1"_s.arg(i), u"V%1"_s.arg(i % 3 + 1), 12 + i % 3, u"testo\n%1"_s.arg(i)});
        }
        const QStringList prima = tutto();
        for (const QString &codice : {u"V1"_s, u"V2"_s, u"V3"_s}) {
            const Atto atto = *leggeAtto(connessione(), codice);
            const auto pronto = SchedaAtto(*scheda::diTipo(atto.tipo), atto).pronto();
            QCOMPARE(pronto.motivo, QString());
            QVERIFY(pronto.atto == atto);
            Atto scritto = atto;
            QCOMPARE(scriveAtto(connessione(), u"O1"_s, atto, scritto).che, EsitoAtto::Scritto);
        }
        QCOMPARE(tutto(), prima);
    }

    // Un rifiuto, un atto cambiato intanto, un atto che non c'è più: nulla è scritto.
    void oNiente()
    {
        QCOMPARE(scrive(pagina(u"R1"_s, {u"voce.Volume=I"_s, u"battezzato.Nome=Eva"_s,
                                         u"testo.Campolungo=Addì"_s}))
                     .che,
                 EsitoAtto::Scritto);
        const Atto atto = *leggeAtto(connessione(), u"V1"_s);
        const SchedaAtto vuota = pagina(
            u"R1"_s, {u"battezzato.Nome="_s, u"voce.Volume=II"_s, u"padre.Nome=Pio"_s}, atto);
        const QStringList prima = tutto();
        const EsitoAtto rifiutato = scrive(vuota, atto);
        QCOMPARE(rifiutato.che, EsitoAtto::Rifiutato);
        QVERIFY(rifiutato.motivo.contains(u"senza un dettaglio del nome"_s));
        QCOMPARE(tutto(), prima);
        QCOMPARE(scrive(pagina(u"R1"_s, {u"testo.Campolungo= "_s}, atto), atto).che,
                 EsitoAtto::Rifiutato);

        esegui(u"UPDATE Individui SET Cognome = 'Rossi'"_s);
        const QStringList altrui = tutto();
        const EsitoAtto cambiato = scrive(pagina(u"R1"_s, {u"voce.Volume=II"_s}, atto), atto);
        QCOMPARE(cambiato.che, EsitoAtto::Cambiato);
        QCOMPARE(testoDi(cambiato.nelFile->persone.first().campi, u"Cognome"_s), u"Rossi"_s);
        QCOMPARE(tutto(), altrui);
        esegui(u"DELETE FROM Voci"_s);
        const EsitoAtto sparito = scrive(pagina(u"R1"_s, {u"voce.Volume=II"_s}, atto), atto);
        QCOMPARE(sparito.che, EsitoAtto::Cambiato);
        QVERIFY(!sparito.nelFile);
    }

    void vicini()
    {
        esegui(u"INSERT INTO Voci (Codice, Registro) VALUES ('V2', 'R1'), ('V10', 'R1'), "
               "('V3', 'R2'), ('V9', 'R1')"_s);
        QCOMPARE(ultimoAtto(connessione(), u"R1"_s), u"V10"_s);
        QCOMPARE(attoAccanto(connessione(), u"R1"_s, u"V9"_s, false), u"V2"_s);
        QCOMPARE(attoAccanto(connessione(), u"R1"_s, u"V10"_s, true), QString());
    }
};

QTEST_GUILESS_MAIN(TestAtto)
#include "tst_atto.moc"
