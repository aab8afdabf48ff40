#include "platform/motore/ado.h"

#include "platform/disco/provvisorio.h"
#include "platform/motore/presa.h"

#include <QFile>
#include <QFileInfo>

#include <sqlite3.h>

namespace ado
{

namespace
{

constexpr int attesaMillisecondi = 2500;
constexpr qsizetype pronteAlMassimo = 100;

Causa causaDi(int esito)
{
    // Un settore che il disco non rende più è un danno al file come un altro.
    if (esito == SQLITE_IOERR_READ || esito == SQLITE_IOERR_SHORT_READ)
        return Causa::Danneggiato;
    if (esito == SQLITE_READONLY_DBMOVED)
        return Causa::Spostato;
    switch (esito & 0xff) {
    case SQLITE_NOTADB:
        return Causa::NonArchivio;
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return Causa::Occupato;
    case SQLITE_CORRUPT:
    case SQLITE_FORMAT:
        return Causa::Danneggiato;
    case SQLITE_READONLY:
        return Causa::SolaLettura;
    case SQLITE_FULL:
        return Causa::DiscoPieno;
    case SQLITE_INTERRUPT:
        return Causa::Interrotto;
    case SQLITE_CONSTRAINT:
    case SQLITE_MISMATCH:
        return Causa::NonEntra;
    case SQLITE_CANTOPEN:
    case SQLITE_PERM:
    case SQLITE_AUTH:
        return Causa::Illeggibile;
    default:
        return Causa::Altro;
    }
}

// Le cause che capitano a chi trascrive si dicono in italiano; il testo del motore resta accanto.
QString spiegazione(Causa causa)
{
    switch (causa) {
    case Causa::NonArchivio:
        return QStringLiteral("non è un file di archivi di Tarvola");
    case Causa::Occupato:
        return QStringLiteral("il file è bloccato da un altro programma; riprovare tra poco");
    case Causa::Danneggiato:
        return QStringLiteral("il file è danneggiato");
    case Causa::SolaLettura:
        return QStringLiteral("il file è di sola lettura");
    case Causa::DiscoPieno:
        return QStringLiteral("il disco è pieno");
    case Causa::Spostato:
        return QStringLiteral("il file è stato spostato o sostituito da un altro programma; "
                              "chiudere e riaprire Tarvola");
    case Causa::Illeggibile:
        return QStringLiteral("il file non può essere letto");
    default:
        return {};
    }
}

Errore erroreDi(int esito, const QString &motore)
{
    const Causa causa = causaDi(esito);
    const QString parole = spiegazione(causa);
    return {causa, parole.isEmpty() ? motore : QStringLiteral("%1 (%2)").arg(parole, motore)};
}

// Il percorso può contenere punti e virgola: finisce dove comincia la chiave che gli sta dopo.
QString sorgente(const QString &stringa)
{
    const QString chiave = QStringLiteral("Data Source=");
    const qsizetype inizio = stringa.indexOf(chiave, 0, Qt::CaseInsensitive) + chiave.size();
    const qsizetype fine =
        stringa.lastIndexOf(QStringLiteral(";Jet OLEDB:"), -1, Qt::CaseInsensitive);
    return stringa.mid(inizio, fine < 0 ? -1 : fine - inizio);
}

void legaTesto(sqlite3_stmt *istruzione, int posto, const QByteArray &utf8)
{
    sqlite3_bind_text64(istruzione, posto, utf8.constData(),
                        static_cast<sqlite3_uint64>(utf8.size()), SQLITE_TRANSIENT, SQLITE_UTF8);
}

void lega(sqlite3_stmt *istruzione, int posto, const QVariant &valore)
{
    switch (valore.typeId()) {
    case QMetaType::UnknownType:
        sqlite3_bind_null(istruzione, posto);
        break;
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
        sqlite3_bind_int64(istruzione, posto, valore.toLongLong());
        break;
    case QMetaType::Double:
        sqlite3_bind_double(istruzione, posto, valore.toDouble());
        break;
    case QMetaType::QByteArray: {
        const QByteArray byte = valore.toByteArray();
        sqlite3_bind_blob64(istruzione, posto, byte.isNull() ? "" : byte.constData(),
                            static_cast<sqlite3_uint64>(byte.size()), SQLITE_TRANSIENT);
        break;
    }
    default:
        if (valore.typeId() == qMetaTypeId<ByteDaScrivere>())
            sqlite3_bind_zeroblob64(
                istruzione, posto,
                static_cast<sqlite3_uint64>(valore.value<ByteDaScrivere>().quanti));
        else
            legaTesto(istruzione, posto,
                      valore.typeId() == qMetaTypeId<Utf8>() ? valore.value<Utf8>().byte
                                                             : valore.toString().toUtf8());
        break;
    }
}

} // namespace

// Un'istruzione presa in prestito dalla connessione e resa alla fine, qualunque cosa accada.
class Istruzione
{
public:
    Istruzione(Connection &connessione, const Comando &comando)
        : m_connessione(connessione),
          m_testo(comando.testo),
          m_istruzione(connessione.prepara(comando.testo))
    {
        for (qsizetype i = 0; i < comando.valori.size(); ++i)
            lega(m_istruzione, static_cast<int>(i + 1), comando.valori.at(i));
    }
    ~Istruzione() { m_connessione.restituisci(m_testo, m_istruzione); }
    Istruzione(const Istruzione &) = delete;
    Istruzione &operator=(const Istruzione &) = delete;

    bool avanza()
    {
        const int esito = sqlite3_step(m_istruzione);
        if (esito == SQLITE_ROW)
            return true;
        if (esito != SQLITE_DONE)
            m_connessione.fallisci(esito);
        return false;
    }
    sqlite3_stmt *operator*() const { return m_istruzione; }

private:
    Connection &m_connessione;
    QString m_testo;
    sqlite3_stmt *m_istruzione;
};

Connection::Connection() = default;

Connection::~Connection()
{
    Close();
}

void Connection::Open(const QString &stringa, const QString & /*utente*/,
                      const QString & /*password*/)
{
    if (m_base != nullptr)
        throw Errore(Causa::Altro, QStringLiteral("la connessione è già aperta"));
    const QString percorso = sorgente(stringa);
    const QFileInfo info(percorso);
    if (!info.exists())
        throw Errore(Causa::Mancante, QStringLiteral("il file non esiste"));
    if (!info.isFile())
        throw Errore(Causa::NonArchivio, QStringLiteral("non è un file"));
    if (!info.isReadable())
        throw Errore(Causa::Illeggibile, QStringLiteral("manca il permesso di leggere il file"));
    try {
        // Il file può essere sostituito proprio mentre lo si apre.
        do {
            Close();
            m_presa = std::make_unique<Presa>(percorso);
            apriBase(percorso, SQLITE_OPEN_READWRITE);
        } while (!m_presa->attuale(percorso));
        leggeLoSchema();
    } catch (...) {
        Close();
        throw;
    }
    m_percorso = percorso;
}

void Connection::Create(const QString &percorso)
{
    provvisorio::crea(percorso);
    apriBase(percorso, SQLITE_OPEN_READWRITE);
    m_percorso = percorso;
}

void Connection::apriBase(const QString &percorso, int modi)
{
    const int esito =
        sqlite3_open_v2(QFile::encodeName(percorso).constData(), &m_base, modi, nullptr);
    if (esito != SQLITE_OK)
        fallisci(esito);
    sqlite3_extended_result_codes(m_base, 1);
    sqlite3_busy_timeout(m_base, attesaMillisecondi);
    // Un archivio può arrivare per posta: lo schema di un file altrui non comanda il motore.
    sqlite3_db_config(m_base, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
    sqlite3_db_config(m_base, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    sqlite3_db_config(m_base, SQLITE_DBCONFIG_ENABLE_VIEW, 0, nullptr);
}

// Finché lo schema del file non è stato guardato il motore è tenuto a freno: leggerlo è già un
// lavoro che il file decide.
void Connection::leggeLoSchema()
{
    const Freno freno(*this);
    // Un'istruzione così non può essere sbagliata: se il motore la dice tale, lo è il file.
    // Ciò che si toglie si cancella davvero: il file può essere dato ad altri.
    const int esito = sqlite3_exec(m_base, "PRAGMA synchronous = FULL; PRAGMA secure_delete = ON",
                                   nullptr, nullptr, nullptr);
    if (esito != SQLITE_OK && freno.scattato())
        throw estraneo(QStringLiteral("uno schema smisurato"));
    if (esito != SQLITE_OK)
        fallisci(esito == SQLITE_ERROR ? SQLITE_CORRUPT : esito);
}

void Connection::riprendeIlGiornale()
{
    const QString solito = QStringLiteral("delete");
    if (valore({QStringLiteral("PRAGMA journal_mode"), {}, {}}).toString() == solito)
        return;
    try {
        if (valore({QStringLiteral("PRAGMA journal_mode = DELETE"), {}, {}}).toString() == solito)
            return;
    } catch (const Errore &errore) {
        if (errore.causa() == Causa::SolaLettura)
            return;
        if (errore.causa() != Causa::Occupato)
            throw;
    }
    throw Errore(Causa::Occupato,
                 QStringLiteral("un altro programma sta usando il file in un modo (WAL) che "
                                "Tarvola non usa; chiuderlo e riprovare"));
}

void Connection::Close()
{
    for (sqlite3_stmt *istruzione : std::as_const(m_pronte))
        sqlite3_finalize(istruzione);
    m_pronte.clear();
    sqlite3_close_v2(m_base);
    m_base = nullptr;
    m_presa.reset();
}

QString Connection::Properties(QStringView nome) const
{
    return nome.compare(u"Data Source", Qt::CaseInsensitive) == 0 ? m_percorso : QString();
}

int Connection::Execute(const Comando &comando)
{
    Istruzione istruzione(*this, comando);
    while (istruzione.avanza())
        continue;
    return sqlite3_changes(m_base);
}

void Connection::leggi(const Comando &comando, const std::function<bool(const Riga &)> &perRiga)
{
    Istruzione istruzione(*this, comando);
    while (istruzione.avanza() && perRiga(Riga(*istruzione)))
        continue;
}

QVariant Connection::valore(const Comando &comando)
{
    QVariant primo;
    leggi(comando, [&primo](const Riga &riga) {
        primo = riga.valore(0);
        return false;
    });
    return primo;
}

QStringList Connection::colonne(const Comando &comando)
{
    Istruzione istruzione(*this, comando);
    const Riga riga(*istruzione);
    QStringList nomi;
    for (int i = 0; i < riga.colonne(); ++i)
        nomi.append(riga.nome(i));
    return nomi;
}

bool Connection::inTransazione() const
{
    return m_base != nullptr && sqlite3_get_autocommit(m_base) == 0;
}

sqlite3_stmt *Connection::prepara(const QString &testo)
{
    if (m_base == nullptr)
        throw Errore(Causa::Chiusa, QStringLiteral("il file di archivi è chiuso"));
    if (m_sospesa)
        throw Errore(Causa::Occupato, QStringLiteral("sul file di archivi è in corso un lavoro"));
    if (sqlite3_stmt *pronta = m_pronte.take(testo))
        return pronta;
    const QByteArray utf8 = testo.toUtf8();
    sqlite3_stmt *istruzione = nullptr;
    const int esito = sqlite3_prepare_v2(m_base, utf8.constData(), static_cast<int>(utf8.size()),
                                         &istruzione, nullptr);
    if (esito != SQLITE_OK)
        fallisci(esito);
    return istruzione;
}

void Connection::restituisci(const QString &testo, sqlite3_stmt *istruzione)
{
    sqlite3_reset(istruzione);
    sqlite3_clear_bindings(istruzione);
    // Chi chiude la connessione mentre legge, o annida la stessa lettura, trova il posto occupato.
    if (m_base == nullptr || m_pronte.contains(testo) || m_pronte.size() >= pronteAlMassimo)
        sqlite3_finalize(istruzione);
    else
        m_pronte.insert(testo, istruzione);
}

void Connection::fallisci(int esito) const
{
    throw erroreDi(esito, QString::fromUtf8(m_base == nullptr ? sqlite3_errstr(esito)
                                                              : sqlite3_errmsg(m_base)));
}

} // namespace ado
