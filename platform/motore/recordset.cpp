#include "platform/motore/recordset.h"

#include <algorithm>

namespace ado
{

void Recordset::Open(const Comando &comando, Connection &connessione, int blocco)
{
    m_connessione = &connessione;
    m_blocco = blocco;
    m_nomi = connessione.colonne(comando);
    m_righe.clear();
    m_cambiati.clear();
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
}

void Recordset::Assegna(const QString &nome, const QVariant &valore)
{
    if (m_blocco == adLockReadOnly)
        throw Errore(Causa::SolaLettura, QStringLiteral("il record è aperto in sola lettura"));
    riga(); // lancia, se non c'è un record corrente
    const bool vuoto = valore.typeId() == QMetaType::QString && valore.toString().isEmpty();
    const QVariant nuovo = vuoto ? QVariant() : valore;
    const qsizetype dove = posto(nome);
    QVariant &presente = m_righe[static_cast<size_t>(m_corrente)][static_cast<size_t>(dove)];
    // Riscrivere lo stesso valore non è un cambiamento: nel file si scrive solo ciò che cambia.
    if (presente == nuovo && presente.isValid() == nuovo.isValid())
        return;
    presente = nuovo;
    m_cambiati.insert(m_nomi.at(dove), nuovo);
}

} // namespace ado
