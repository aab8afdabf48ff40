#pragma once

#include "platform/motore/ado.h"

#include <QStringList>
#include <QVariantMap>

#include <vector>

namespace ado
{

constexpr int adLockReadOnly = 1;
constexpr int adLockOptimistic = 3;

// Un insieme statico di righe, lette tutte all'apertura: per record singoli ed elenchi corti.
// Con blocco 1 ogni modifica è rifiutata con Errore. Si può copiare per tornare a uno stato.
class Recordset
{
public:
    // Legge le righe del comando e si mette sulla prima.
    void Open(const Comando &comando, Connection &connessione, int blocco);
    void Close();
    int State() const { return m_connessione == nullptr ? adStateClosed : adStateOpen; }

    bool Bof() const { return m_corrente < 0 || m_righe.empty(); }
    bool Eof() const { return m_corrente >= static_cast<qsizetype>(m_righe.size()); }
    void MoveNext() { ++m_corrente; }

    // Il valore del campo nella riga corrente; non valido se Null.
    QVariant Campo(const QString &nome) const;
    QVariant Campo(int posto) const;
    bool Ha(const QString &nome) const { return m_nomi.contains(nome, Qt::CaseInsensitive); }
    QString Testo(const QString &nome) const { return Campo(nome).toString(); }

    // Comincia una riga nuova, tutta Null, che diventa la corrente.
    void AddNew();
    // Cambia un campo della riga corrente; il testo vuoto è Null. L'archivio resta com'è: ciò che è
    // cambiato lo scrive chi legge `Cambiati`.
    void Assegna(const QString &nome, const QVariant &valore);
    // I campi assegnati con un valore diverso da quello che avevano.
    const QVariantMap &Cambiati() const { return m_cambiati; }

private:
    qsizetype posto(const QString &nome) const;
    const std::vector<QVariant> &riga() const;

    Connection *m_connessione = nullptr;
    int m_blocco = adLockReadOnly;
    QStringList m_nomi;
    std::vector<std::vector<QVariant>> m_righe;
    qsizetype m_corrente = -1;
    QVariantMap m_cambiati;
};

} // namespace ado
