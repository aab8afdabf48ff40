// Le dichiarazioni delle sessioni stanno dietro questi nomi.
#define SQLITE_ENABLE_SESSION 1
#define SQLITE_ENABLE_PREUPDATE_HOOK 1
#include "platform/motore/sessione.h"

#include <sqlite3.h>

namespace ado
{

Sessione::Sessione(Connection &connessione, bool (*entra)(QByteArrayView tabella))
    : m_connessione(connessione), m_entra(entra)
{
    const int esito = sqlite3session_create(connessione.base(), "main", &m_sessione);
    if (esito != SQLITE_OK)
        connessione.fallisci(esito);
    sqlite3session_table_filter(
        m_sessione,
        [](void *questa, const char *tabella) {
            return static_cast<Sessione *>(questa)->m_entra(tabella) ? 1 : 0;
        },
        this);
    sqlite3session_attach(m_sessione, nullptr);
    connessione.m_sessione = this;
}

Sessione::~Sessione()
{
    m_connessione.m_sessione = nullptr;
    sqlite3session_delete(m_sessione);
}

qint64 Sessione::memoria() const
{
    return sqlite3session_memory_used(m_sessione);
}

void Sessione::cambiamenti(const Uscita &uscita) const
{
    const int esito = sqlite3session_changeset_strm(
        m_sessione,
        [](void *dove, const void *byte, int quanti) {
            (*static_cast<const Uscita *>(dove))(
                QByteArrayView(static_cast<const char *>(byte), quanti));
            return SQLITE_OK;
        },
        const_cast<Uscita *>(&uscita));
    if (esito != SQLITE_OK)
        m_connessione.fallisci(esito);
}

// Una sospensione dentro un'altra non riaccende prima del tempo.
Sospensione::Sospensione(Connection &connessione)
    : m_sessione(connessione.m_sessione == nullptr ? nullptr : connessione.m_sessione->m_sessione)
{
    if (m_sessione != nullptr && sqlite3session_enable(m_sessione, -1) == 0)
        m_sessione = nullptr;
    if (m_sessione != nullptr)
        sqlite3session_enable(m_sessione, 0);
}

Sospensione::~Sospensione()
{
    if (m_sessione != nullptr)
        sqlite3session_enable(m_sessione, 1);
}

Mutamento::Mutamento(sqlite3_changeset_iter *quale) : m_quale(quale)
{
    const char *tabella = nullptr;
    int operazione = 0;
    sqlite3changeset_op(quale, &tabella, &m_colonne, &operazione, nullptr);
    m_tabella = QString::fromUtf8(tabella);
    m_specie = operazione == SQLITE_INSERT ? Nuovo : operazione == SQLITE_DELETE ? Tolto : Cambiato;
}

namespace
{

sqlite3_value *valoreDi(sqlite3_changeset_iter *quale, bool nuovo, int colonna)
{
    sqlite3_value *valore = nullptr;
    if (nuovo)
        sqlite3changeset_new(quale, colonna, &valore);
    else
        sqlite3changeset_old(quale, colonna, &valore);
    return valore;
}

} // namespace

QStringList Mutamento::chiave() const
{
    unsigned char *diChiave = nullptr;
    sqlite3changeset_pk(m_quale, &diChiave, nullptr);
    QStringList valori;
    for (int i = 0; i < m_colonne; ++i) {
        if (diChiave[i] == 0)
            continue;
        sqlite3_value *valore = valoreDi(m_quale, m_specie == Nuovo, i);
        valori.append(
            QString::fromUtf8(reinterpret_cast<const char *>(sqlite3_value_text(valore))));
    }
    return valori;
}

bool Mutamento::nullo(int colonna) const
{
    sqlite3_value *valore = valoreDi(m_quale, m_specie == Nuovo, colonna);
    return valore == nullptr || sqlite3_value_type(valore) == SQLITE_NULL;
}

namespace
{

[[noreturn]] void rovinato(int esito)
{
    throw Errore(esito == SQLITE_CORRUPT ? Causa::Danneggiato : Causa::Altro,
                 QStringLiteral("i cambiamenti registrati non si leggono (%1)")
                     .arg(QString::fromUtf8(sqlite3_errstr(esito))));
}

} // namespace

void Insieme::percorre(const std::function<void(const Mutamento &)> &perOgnuno) const
{
    sqlite3_changeset_iter *quale = nullptr;
    int esito = sqlite3changeset_start_v2(&quale, static_cast<int>(m_byte.size()),
                                          const_cast<char *>(m_byte.constData()),
                                          m_verso == Indietro ? SQLITE_CHANGESETSTART_INVERT : 0);
    if (esito != SQLITE_OK)
        rovinato(esito);
    try {
        while (sqlite3changeset_next(quale) == SQLITE_ROW)
            perOgnuno(Mutamento(quale));
    } catch (...) {
        sqlite3changeset_finalize(quale);
        throw;
    }
    esito = sqlite3changeset_finalize(quale);
    if (esito != SQLITE_OK)
        rovinato(esito);
}

bool Insieme::compie(Connection &connessione,
                     const std::function<void(const Mutamento &)> &impedito) const
{
    struct Esito {
        const std::function<void(const Mutamento &)> &impedito;
        bool fermato = false;
    } suo{impedito};
    const int esito = sqlite3changeset_apply_v2(
        connessione.base(), static_cast<int>(m_byte.size()), const_cast<char *>(m_byte.constData()),
        nullptr,
        [](void *dove, int /*perche*/, sqlite3_changeset_iter *quale) {
            auto *esitoSuo = static_cast<Esito *>(dove);
            if (!esitoSuo->fermato)
                esitoSuo->impedito(Mutamento(quale));
            esitoSuo->fermato = true;
            return SQLITE_CHANGESET_ABORT;
        },
        &suo, nullptr, nullptr, m_verso == Indietro ? SQLITE_CHANGESETAPPLY_INVERT : 0);
    if (esito != SQLITE_OK && !suo.fermato)
        connessione.fallisci(esito);
    return !suo.fermato;
}

} // namespace ado
