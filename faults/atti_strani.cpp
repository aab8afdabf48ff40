#include "faults/atti_strani.h"

#include "db/schema/generi.h"

#include <iterator>

using namespace modTarvola;

namespace attiStrani
{

namespace
{

const char *const nomi[] = {"Giuseppe Fortunino", "Maria",  "Niccolò", "Anna Maria Caterina",
                            "Gio. Batta",         "Angelo", "Orsola",  "Øystein"};
const char *const cognomi[] = {"Verdi", "D'Aquino", "de' Medici", "Dell'Òrto", "Zùccari", "Uttini"};
const char *const luoghi[] = {"Roncole", "Sant'Agata", "Forlì", "Cà d'Andrea"};

// I ruoli e i generi d'evento che la pagina conosce, quelli che ha soltanto fra gli altri, e alcuni
// che nessuno ha mai avuto.
constexpr int ruoliQualunque[] = {1, 2, 3, 4, 5, 6, 7, 34, 36, 37, 40, 0, 999, -3};
constexpr int eventiQualunque[] = {18, 19, 20, 21, 22, 23, 26, 27, 28, 33, 38, 39, 46, 47, 8, 999};

class Generatore
{
public:
    Generatore(ado::Connection &connessione, quint32 seme)
        : m_connessione(connessione), m_caso(seme)
    {
    }

    void scrive(int persone)
    {
        ado::Transazione transazione(m_connessione);
        contenitori();
        while (m_persone < persone)
            voce();
        transazione.conferma();
    }

private:
    void esegue(const char *istruzione, const QVariantList &valori)
    {
        m_connessione.Execute({QString::fromUtf8(istruzione), valori, {}});
    }
    int fra(int quanti) { return m_caso.bounded(quanti); }
    bool unoSu(int quanti) { return fra(quanti) == 0; }
    template <typename Cosa, size_t quante>
    Cosa uno(const Cosa (&cose)[quante])
    {
        return cose[fra(static_cast<int>(quante))];
    }
    QVariant parola(const char *giusta) { return strano(QString::fromUtf8(giusta)); }

    // I codici si scrivono di solito in maiuscolo, ma chi li legge non vi bada.
    QString detto(const QString &codice) { return unoSu(12) ? codice.toLower() : codice; }
    QString codice(char lettera, int numero)
    {
        return detto(QLatin1Char(lettera) + QString::number(numero));
    }

    // Il valore giusto o, di rado, uno che nessuna casella scriverebbe.
    QVariant strano(const QVariant &giusto, int rado = 12)
    {
        if (!unoSu(rado))
            return giusto;
        switch (fra(12)) {
        case 0:
            return QString(QLatin1String(""));
        case 1:
            return QStringLiteral("   ");
        case 2:
            return u' ' + giusto.toString() + u' ';
        case 3:
            return giusto.toString() + u'\n' + giusto.toString();
        case 4:
            return QString(3000, u'à');
        case 5:
            return fra(100000);
        case 6:
            return 1.5;
        case 7:
            return QByteArray("\xff\x00x", 3);
        case 8:
            return giusto.toString() + QString::fromUtf8("\u00a0\u2028\U0001F642\te\u0301");
        case 9:
            return giusto.toString().toUpper();
        case 10:
            return giusto.toString().toLower();
        default:
            return {};
        }
    }

    QVariant data()
    {
        const int anno = 1560 + fra(370);
        const QString giusta = QStringLiteral("%1-%2-%3")
                                   .arg(anno)
                                   .arg(1 + fra(12), 2, 10, QLatin1Char('0'))
                                   .arg(1 + fra(28), 2, 10, QLatin1Char('0'));
        switch (fra(30)) {
        case 0:
            return QStringLiteral("1750-02-30");
        case 1:
            return QStringLiteral("circa il 1750");
        case 2:
            return giusta + QStringLiteral(" 10:20:30");
        case 3:
            return QStringLiteral("3/4/1750");
        case 4:
            return anno;
        case 5:
            return {};
        default:
            return strano(giusta, 40);
        }
    }

    QVariant ora(const QVariant &giorno)
    {
        switch (fra(8)) {
        case 0:
            return QStringLiteral("1750-03-04 20:00:00");
        case 1:
            return QStringLiteral("20:15");
        case 2:
            return giorno.toString() + QStringLiteral(" 07:30:15");
        default:
            return strano({}, 10);
        }
    }

    void contenitori()
    {
        esegue("INSERT INTO Archivi (Codice, Nome) VALUES ('A1', 'Duomo')", {});
        for (const char *codice : {"O1", "O2", "o3"})
            esegue("INSERT INTO Operatori (Codice, Nome, Password, Tipo) VALUES (?, 'Ada', ?, 42)",
                   {QString::fromUtf8(codice), QString::fromUtf8(codice)});
        for (int i = 0; i < registri; ++i)
            esegue("INSERT INTO Registri (Codice, Archivio, Tipo, Titolo) VALUES (?, 'A1', ?, ?)",
                   {i == 0 ? QStringLiteral("r1") : QStringLiteral("R%1").arg(i + 1), 9 + i % 3,
                    strano(QStringLiteral("Libro %1").arg(i + 1), 3)});
        // Registri che non hanno una pagina: i loro atti restano per gli elenchi.
        esegue("INSERT INTO Registri (Codice, Archivio, Tipo) VALUES ('R90', 'A1', NULL), "
               "('R91', 'A9', 12)",
               {});
    }

    void voce()
    {
        const int numero = ++m_voci;
        const int registro = fra(registri);
        m_voce = codice('V', numero);
        m_tipo = 9 + registro % 3;
        const QString suo = unoSu(60) ? QStringLiteral("R90") : codice('R', registro + 1);
        esegue("INSERT INTO Voci (Codice, Registro, Volume, Data, PaginaIniziale, CodiceVoce, "
               "Modifica) VALUES (?, ?, ?, ?, ?, ?, ?)",
               {m_voce, suo, strano(QStringLiteral("III")), data(), strano(fra(300)),
                strano(QStringLiteral("%1 bis").arg(numero)),
                strano(QStringLiteral("2024-01-01 10:00:00"))});
        m_sue.clear();
        if (m_tipo == RegistroBattesimi)
            conGenitori(persona(unoSu(20) ? uno(ruoliQualunque) : 1));
        else if (m_tipo == RegistroMatrimoni)
            coppia();
        else
            morto();
        for (int i = fra(4); i > 0; --i)
            persona(m_tipo == RegistroBattesimi ? Padrino : 5);
        for (int i = fra(3) / 2; i > 0; --i)
            persona(uno(ruoliQualunque));
        if (unoSu(6))
            famigliaStrana();
        allegati(m_voce);
        operatori(m_voce);
    }

    // Una persona dell'atto, o di un altro, o di nessuno; coi suoi eventi.
    QString persona(int ruolo, const QVariant &sesso = {})
    {
        const QString suo = codice('I', ++m_persone);
        QVariant voce = m_voce;
        if (unoSu(25))
            voce = unoSu(3) ? QVariant() : QVariant(codice('V', 1 + fra(m_voci + 3)));
        const auto lettera = [this](const char *lettere) -> QVariant {
            if (unoSu(4))
                return strano({}, 3);
            const QString tutte = QString::fromUtf8(lettere);
            return tutte.mid(fra(static_cast<int>(tutte.size())), 1);
        };
        esegue("INSERT INTO Individui (Codice, Voce, Nome, Cognome, Soprannome, Detto, "
               "Precisazione, \"Età\", Sesso, Legittimo, Vivente, Ruolo, Creazione, Modifica) "
               "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)",
               {suo, detto(voce), parola(uno(nomi)), parola(uno(cognomi)), raro("Gobbo"),
                raro("il Rosso"), raro("oste"), raro("anni 30"),
                sesso.isValid() && !unoSu(8) ? sesso : lettera("MFmfX"), lettera("SNs?"),
                lettera("SNn!"), unoSu(40) ? strano(ruolo, 1) : QVariant(ruolo),
                strano(QStringLiteral("2024-01-01 10:00:00")), raro("2024-02-02 10:00:00")});
        m_sue.append(suo);
        for (int i = fra(4); i > 0; --i)
            evento(suo);
        if (unoSu(6))
            allegati(suo);
        if (unoSu(3))
            operatori(suo);
        return suo;
    }
    QVariant detto(const QVariant &codice)
    {
        return codice.isValid() ? QVariant(detto(codice.toString())) : codice;
    }
    QVariant raro(const char *valore) { return unoSu(5) ? parola(valore) : QVariant(); }

    QString famiglia(int ruolo)
    {
        const QString sua = codice('F', ++m_famiglie);
        QVariant voce = m_voce;
        if (unoSu(20))
            voce = unoSu(2) ? QVariant() : QVariant(codice('V', 1 + fra(m_voci + 3)));
        esegue("INSERT INTO Famiglie (Codice, Voce, Ruolo) VALUES (?, ?, ?)",
               {sua, voce, unoSu(30) ? strano(ruolo, 1) : QVariant(ruolo)});
        for (int i = fra(6) / 4; i > 0; --i)
            evento(sua);
        if (unoSu(10))
            allegati(sua);
        return sua;
    }
    void iscrive(const char *tabella, const QString &famiglia, const QString &persona)
    {
        esegue(qPrintable(QStringLiteral("INSERT OR IGNORE INTO %1 VALUES (?, ?)")
                              .arg(QString::fromUtf8(tabella))),
               {detto(famiglia), detto(persona)});
    }

    // I genitori in una famiglia, in due, in nessuna, con altri ruoli, uno solo, o tre.
    void conGenitori(const QString &figlio)
    {
        const int modo = fra(8);
        if (modo == 0)
            return;
        QString sua = modo == 1 ? QString() : famiglia(FamigliaGenitori);
        for (const int ruolo : {Padre, Madre, Padre}) {
            if ((ruolo == Padre && !sua.isEmpty() && unoSu(8)) || (m_sue.size() > 2 && !unoSu(10)))
                continue;
            const QString genitore =
                persona(unoSu(10) ? uno(ruoliQualunque) : ruolo,
                        ruolo == Padre ? QStringLiteral("M") : QStringLiteral("F"));
            if (sua.isEmpty())
                continue;
            iscrive("FamiglieConiugi", sua, genitore);
            iscrive("FamiglieGenitori", sua, figlio);
            if (modo == 2)
                sua = famiglia(FamigliaGenitori);
        }
    }

    // Gli sposi nei due versi, tutti e due dell'atto, senza famiglia, in due famiglie, uno solo.
    void coppia()
    {
        const int modo = fra(7);
        const QString sposo = persona(modo == 1 ? 6 : 2, QStringLiteral("M"));
        const QString sposa =
            modo == 6 ? QString() : persona(modo == 0 ? 7 : 3, QStringLiteral("F"));
        if (unoSu(2))
            conGenitori(sposo);
        if (!sposa.isEmpty() && unoSu(2))
            conGenitori(sposa);
        if (modo == 3)
            return;
        for (int i = modo == 4 ? 2 : 1; i > 0; --i) {
            const QString loro = famiglia(FamigliaConiuge);
            iscrive("FamiglieConiugi", loro, sposo);
            if (!sposa.isEmpty())
                iscrive("FamiglieConiugi", loro, sposa);
            evento(loro, 18);
            if (unoSu(3))
                evento(loro, unoSu(2) ? 18 : 19);
            if (modo == 5)
                iscrive("FamiglieConiugi", loro, persona(7, QStringLiteral("F")));
        }
    }

    void morto()
    {
        const QString suo = persona(4);
        if (unoSu(2))
            conGenitori(suo);
        for (int i = fra(3); i > 0; --i) {
            const QString loro = famiglia(FamigliaConiuge);
            iscrive("FamiglieConiugi", loro, suo);
            iscrive("FamiglieConiugi", loro, persona(6 + fra(2)));
            if (unoSu(3))
                iscrive("FamiglieGenitori", loro, persona(1));
        }
    }

    // Con chi non c'è più, con chi è due volte, con persone di altri atti, o vuota.
    void famigliaStrana()
    {
        const QString sua = famiglia(unoSu(2) ? FamigliaConiuge : FamigliaGenitori);
        for (int i = fra(4); i > 0; --i) {
            const char *tabella = unoSu(2) ? "FamiglieConiugi" : "FamiglieGenitori";
            const int quale = fra(3);
            iscrive(tabella, sua,
                    quale == 0   ? codice('I', 1'000'000 + fra(9))
                    : quale == 1 ? codice('I', 1 + fra(m_persone))
                                 : m_sue.at(fra(static_cast<int>(m_sue.size()))));
        }
    }

    void evento(const QString &proprietario, int tipo = 0)
    {
        const QString suo = codice('E', ++m_eventi);
        const QVariant giorno = data();
        const QVariant che = tipo != 0   ? QVariant(tipo)
                             : unoSu(40) ? strano(20, 1)
                                         : QVariant(uno(eventiQualunque));
        esegue("INSERT INTO Eventi (Codice, IdProprietario, Tipo, Data, Ora, Luogo, Indirizzo, "
               "Causa, Valore, Modifica) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?)",
               {suo, unoSu(60) ? codice('I', 2'000'000) : detto(proprietario), che, giorno,
                ora(giorno), parola(uno(luoghi)), raro("via Larga, 3"), raro("febbre"),
                raro("in casa"), raro("2024-02-02 10:00:00")});
        if (unoSu(15))
            allegati(suo);
        if (unoSu(4))
            operatori(suo);
    }

    void allegati(const QString &proprietario)
    {
        for (int i = fra(5); i > 0; --i) {
            const int genere = 12 + fra(3);
            const QString lungo = QStringLiteral("L'anno 1750, addì 3 marzo: «è nato»\n")
                                      .repeated(unoSu(20) ? 3000 : 3);
            const QVariant testo =
                unoSu(5) ? QVariant(QString(lungo).replace(u'\n', QStringLiteral("\r\n")))
                         : strano(lungo, 6);
            esegue("INSERT INTO Binari (Codice, Tipo, IdProprietario, Nome, Campolungo) "
                   "VALUES (?, ?, ?, ?, ?)",
                   {codice('B', ++m_binari), genere, detto(proprietario), raro("carta.jpg"),
                    genere == FileAllegato ? QVariant(QByteArray(1000, '\x7f')) : testo});
        }
    }

    void operatori(const QString &record)
    {
        for (int i = fra(3); i > 0; --i)
            esegue("INSERT OR IGNORE INTO OperatoriContesti VALUES (?, ?)",
                   {codice('O', 1 + fra(4)), detto(record)});
    }

    static constexpr int registri = 9;
    ado::Connection &m_connessione;
    QRandomGenerator m_caso;
    int m_persone = 0;
    int m_voci = 0;
    int m_famiglie = 0;
    int m_eventi = 0;
    int m_binari = 0;
    int m_tipo = 0;
    QString m_voce;
    QStringList m_sue; // le persone scritte per l'atto in corso
};

} // namespace

void riempie(ado::Connection &connessione, int persone, quint32 seme)
{
    Generatore(connessione, seme).scrive(persone);
}

} // namespace attiStrani
