// Scrive un archivio grande, sempre lo stesso, con i nomi frequenti quanto nelle parrocchie vere.
//   genera PERCORSO [INDIVIDUI]

#include "db/archivio/connessioni.h"
#include "db/schema/modello.h"

#include <QFile>
#include <QTextStream>

#include <random>

using namespace modTarvola;

namespace
{

constexpr int archivi = 10;
constexpr int registriPerArchivio = 30;
constexpr double individuiPerVoce = 3.53;

const char *const nomi[] = {
    "Giovanni", "Maria",   "Antonio", "Giuseppe", "Francesco",  "Anna",   "Domenica",   "Pietro",
    "Caterina", "Lucia",   "Angela",  "Domenico", "Bartolomeo", "Teresa", "Margherita", "Carlo",
    "Giacomo",  "Rosa",    "Lorenzo", "Orsola",   "Niccolò",    "Andrea", "Maddalena",  "Stefano",
    "Bernardo", "Camilla", "Agnese",  "Michele",  "Ippolita",   "Gaspare"};
const char *const radici[] = {
    "Ross",   "Bianch",  "Ferrar",  "Colomb", "Ricc",    "Marin",  "Grec",  "Brun",
    "Gall",   "Cont",    "De Luc",  "Cost",   "Giordan", "Mancin", "Rizz",  "Lombard",
    "Morett", "Barbier", "Fontan",  "Santor", "Marian",  "Rinald", "Carus", "Ferr",
    "Bianc",  "Martin",  "D'Angel", "Vital",  "Serr",    "Coppol", "È",     "Zanè"};
const char *const finali[] = {"i", "o", "ini", "etti", "elli", "oni", "acci", "ucci", "ato", "à"};
const char *const luoghi[] = {"Roncole",    "Busseto",     "Recanati",      "Montemorello",
                              "San Babila", "Santa Maria", "Cortemaggiore", "Sant'Agata",
                              "Soragna",    "Zibello"};

// Poche voci fanno quasi tutto: la frequenza scende come l'inverso del posto.
class Zipf
{
public:
    explicit Zipf(int quanti)
    {
        double somma = 0;
        for (int i = 1; i <= quanti; ++i)
            m_cumulate.push_back(somma += 1.0 / i);
    }
    int scegli(std::mt19937 &caso) const
    {
        const double punto = std::uniform_real_distribution<double>(0, m_cumulate.back())(caso);
        return static_cast<int>(std::lower_bound(m_cumulate.begin(), m_cumulate.end(), punto) -
                                m_cumulate.begin());
    }

private:
    std::vector<double> m_cumulate;
};

class Generatore
{
public:
    Generatore(ado::Connection &connessione, int individui)
        : m_connessione(connessione), m_individui(individui)
    {
    }

    void scrive()
    {
        ado::Transazione transazione(m_connessione);
        contenitori();
        const int voci = static_cast<int>(m_individui / individuiPerVoce);
        int fatti = 0;
        for (int voce = 1; voce <= voci; ++voce) {
            const int fino = static_cast<int>(static_cast<qint64>(m_individui) * voce / voci);
            scriveVoce(voce, voci, fatti + 1, fino);
            fatti = fino;
        }
        transazione.conferma();
    }

private:
    void esegue(const char *istruzione, const QVariantList &valori)
    {
        m_connessione.Execute({QString::fromUtf8(istruzione), valori, {}});
    }
    static QString codice(char lettera, int numero)
    {
        return QLatin1Char(lettera) + QString::number(numero);
    }
    int fra(int da, int a) { return std::uniform_int_distribution<int>(da, a)(m_caso); }
    QString data(int anno)
    {
        return QStringLiteral("%1-%2-%3")
            .arg(anno)
            .arg(fra(1, 12), 2, 10, QLatin1Char('0'))
            .arg(fra(1, 28), 2, 10, QLatin1Char('0'));
    }
    QString cognome()
    {
        const int quale = m_cognomi.scegli(m_caso);
        return QString::fromUtf8(radici[quale % std::size(radici)]) +
               QString::fromUtf8(finali[quale / static_cast<int>(std::size(radici)) %
                                        static_cast<int>(std::size(finali))]) +
               (quale < 320 ? QString() : QStringLiteral(" di %1").arg(quale / 320));
    }

    void contenitori()
    {
        for (int a = 1; a <= archivi; ++a) {
            esegue("INSERT INTO Archivi (Codice, Nome, Abbreviazione) VALUES (?, ?, ?)",
                   {codice('A', a), QStringLiteral("Archivio parrocchiale %1").arg(a),
                    QStringLiteral("Arch. %1").arg(a)});
            for (int r = 1; r <= registriPerArchivio; ++r)
                esegue("INSERT INTO Registri (Codice, Archivio, Tipo, Titolo) VALUES (?, ?, ?, ?)",
                       {codice('R', (a - 1) * registriPerArchivio + r), codice('A', a), 9 + r % 3,
                        QStringLiteral("Libro %1").arg(r)});
        }
    }

    void scriveVoce(int voce, int voci, int primo, int ultimo)
    {
        constexpr int registri = archivi * registriPerArchivio;
        const int registro = static_cast<int>(static_cast<qint64>(voce - 1) * registri / voci) + 1;
        const int anno = 1560 + (voce % 370);
        const QString suo = codice('V', voce);
        esegue(
            "INSERT INTO Voci (Codice, Registro, Volume, Data, PaginaIniziale) "
            "VALUES (?, ?, ?, ?, ?)",
            {suo, codice('R', registro), QString::number(voce % 40 + 1), data(anno), voce % 300});
        const QString famiglia = codice('F', voce);
        if (ultimo - primo >= 2)
            esegue("INSERT INTO Famiglie (Codice, Voce, Ruolo) VALUES (?, ?, 35)", {famiglia, suo});
        for (int i = primo; i <= ultimo; ++i)
            scriveIndividuo(i, suo, anno, i - primo, ultimo - primo >= 2 ? famiglia : QString());
        esegue("INSERT INTO Binari (Codice, Tipo, IdProprietario, Nome, Campolungo) "
               "VALUES (?, 13, ?, ?, ?)",
               {codice('B', voce), suo, QStringLiteral("Atto %1").arg(voce),
                QStringLiteral("A dì %1 fu battezzato da me, curato di %2, il figlio di %3. ")
                    .arg(data(anno), QString::fromUtf8(luoghi[voce % 10]), cognome())
                    .repeated(3)});
    }

    void scriveIndividuo(int i, const QString &voce, int anno, int posto, const QString &famiglia)
    {
        const QString suo = codice('I', i);
        static constexpr int ruoli[] = {1, 36, 37, 34, 5};
        esegue("INSERT INTO Individui (Codice, Voce, Nome, Cognome, Sesso, Ruolo) "
               "VALUES (?, ?, ?, ?, ?, ?)",
               {suo, voce, QString::fromUtf8(nomi[m_nomi.scegli(m_caso)]), cognome(),
                posto % 2 == 0 ? QStringLiteral("M") : QStringLiteral("F"), ruoli[posto % 5]});
        if (!famiglia.isEmpty() && posto == 0)
            esegue("INSERT INTO FamiglieGenitori VALUES (?, ?)", {famiglia, suo});
        else if (!famiglia.isEmpty() && posto < 3)
            esegue("INSERT INTO FamiglieConiugi VALUES (?, ?)", {famiglia, suo});
        // Tre eventi ogni due persone.
        static constexpr int tipi[] = {20, 21, 26, 27};
        for (int e = 0; e < (i % 2 == 0 ? 2 : 1); ++e)
            esegue("INSERT INTO Eventi (Codice, IdProprietario, Tipo, Data, Luogo) "
                   "VALUES (?, ?, ?, ?, ?)",
                   {codice('E', ++m_eventi), suo, tipi[(i + e) % 4], data(anno),
                    QString::fromUtf8(luoghi[i % 10])});
    }

    ado::Connection &m_connessione;
    int m_individui;
    int m_eventi = 0;
    std::mt19937 m_caso{1845};
    Zipf m_nomi{static_cast<int>(std::size(nomi))};
    Zipf m_cognomi{6000};
};

} // namespace

int main(int argc, char **argv)
{
    QTextStream errori(stderr);
    if (argc < 2) {
        errori << "uso: genera PERCORSO [INDIVIDUI]\n";
        return 2;
    }
    const QString percorso = QString::fromLocal8Bit(argv[1]);
    const int individui = argc > 2 ? QString::fromLocal8Bit(argv[2]).toInt() : 1000000;
    try {
        QFile::remove(percorso);
        creaModello(percorso);
        ado::Connection connessione;
        connessione.Open(stringaDiConnessione(percorso));
        connessione.Execute({QStringLiteral("PRAGMA synchronous = OFF"), {}, {}});
        connessione.Execute({QStringLiteral("PRAGMA cache_size = -400000"), {}, {}});
        Generatore(connessione, individui).scrive();
    } catch (const ado::Errore &errore) {
        errori << errore.testo() << '\n';
        return 1;
    }
    return 0;
}
