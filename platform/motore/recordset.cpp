#include "platform/motore/recordset.h"

#include <algorithm>

namespace ado
{

namespace
{

QString citato(const QString &nome)
{
    return u'"' + nome + u'"';
}

} // namespace

void Recordset::Open(const Comando &comando, Connection &connessione, int blocco)
{
    m_comando = comando;
    m_connessione = &connessione;
    m_blocco = blocco;
    m_nomi = connessione.colonne(comando);
    m_righe.clear();
    m_cambiati.clear();
    m_nuova = false;
    connessione.leggi(comando, [this](const Riga &riga) {
        std::vector<QVariant> valori;
        valori.reserve(static_cast<size_t>(riga.colonne()));
        for (int i = 0; i < riga.colonne(); ++i)
            valori.push_back(riga.valore(i));
        m_righe.push_back(std::move(valori));
        return true;
    });
    m_corrente = 0;
}

void Recordset::Close()
{
    *this = Recordset();
}

qsizetype Recordset::posto(const QString &nome) const
{
    const auto trovato = std::find_if(m_nomi.begin(), m_nomi.end(), [&nome](const QString &suo) {
        return suo.compare(nome, Qt::CaseInsensitive) == 0;
    });
    if (trovato == m_nomi.end())
        throw Errore(Causa::Altro, QStringLiteral("il campo %1 non esiste").arg(nome));
    return trovato - m_nomi.begin();
}

const std::vector<QVariant> &Recordset::riga() const
{
    if (Bof() || Eof())
        throw Errore(Causa::Altro, QStringLiteral("nessun record corrente"));
    return m_righe.at(static_cast<size_t>(m_corrente));
}

QVariant Recordset::Campo(const QString &nome) const
{
    return riga().at(static_cast<size_t>(posto(nome)));
}

QVariant Recordset::Campo(int posto) const
{
    return riga().at(static_cast<size_t>(posto));
}

void Recordset::AddNew()
{
    m_righe.emplace_back(static_cast<size_t>(m_nomi.size()));
    m_corrente = static_cast<qsizetype>(m_righe.size()) - 1;
    m_cambiati.clear();
    m_nuova = true;
}

void Recordset::Assegna(const QString &nome, const QVariant &valore)
{
    if (m_blocco == adLockReadOnly)
        throw Errore(Causa::SolaLettura, QStringLiteral("il record è aperto in sola lettura"));
    riga();
    const bool vuoto = valore.typeId() == QMetaType::QString && valore.toString().isEmpty();
    const QVariant nuovo = vuoto ? QVariant() : valore;
    QVariant &presente = m_righe[static_cast<size_t>(m_corrente)][static_cast<size_t>(posto(nome))];
    if (presente == nuovo && presente.isValid() == nuovo.isValid())
        return;
    presente = nuovo;
    if (!m_cambiati.contains(nome, Qt::CaseInsensitive))
        m_cambiati.append(nome);
}

void Recordset::Update()
{
    if (m_blocco == adLockReadOnly)
        throw Errore(Causa::SolaLettura, QStringLiteral("il record è aperto in sola lettura"));
    if (m_nuova)
        inserisce();
    else if (!m_cambiati.isEmpty())
        aggiorna();
    m_nuova = false;
    m_cambiati.clear();
}

// I campi lasciati Null restano fuori, così valgono i valori predefiniti della tabella.
void Recordset::inserisce()
{
    QStringList nomi;
    QStringList segni;
    QVariantList valori;
    for (qsizetype i = 0; i < m_nomi.size(); ++i) {
        const QVariant &valore = riga().at(static_cast<size_t>(i));
        if (!valore.isValid())
            continue;
        nomi.append(citato(m_nomi.at(i)));
        segni.append(QStringLiteral("?"));
        valori.append(valore);
    }
    m_connessione->Execute({QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
                                .arg(citato(m_comando.tabella), nomi.join(u','), segni.join(u',')),
                            valori,
                            {}});
}

void Recordset::aggiorna()
{
    QStringList assegnazioni;
    QVariantList valori;
    for (const QString &nome : std::as_const(m_cambiati)) {
        assegnazioni.append(citato(nome) + QStringLiteral(" = ?"));
        valori.append(Campo(nome));
    }
    valori.append(Campo(QStringLiteral("Codice")));
    const int cambiate = m_connessione->Execute(
        {QStringLiteral("UPDATE %1 SET %2 WHERE Codice = ?")
             .arg(citato(m_comando.tabella), assegnazioni.join(QStringLiteral(", "))),
         valori,
         {}});
    if (cambiate == 0)
        throw Errore(Causa::Altro, QStringLiteral("il record non esiste più"));
}

} // namespace ado
