#pragma once

#include "comune.h"
#include "db/archivio/custodia.h"
#include "faults/campione.h"

#include <QDir>

inline QHash<QString, campione::Righe> righeDi(const QString &percorso)
{
    Aparte connessione(percorso);
    if (connessione.legge(u"PRAGMA integrity_check"_s).toString() != u"ok"_s)
        throw ado::Errore(ado::Causa::Danneggiato, u"non integro"_s);
    return campione::istantanea(connessione);
}

// Tutto ciò che c'è in una cartella: nomi e contenuti.
inline QMap<QString, QByteArray> contenuto(const QString &cartella)
{
    QMap<QString, QByteArray> file;
    const QDir dove(cartella);
    for (const QString &nome : dove.entryList(QDir::Files | QDir::Hidden | QDir::System))
        file.insert(nome, byteDi(dove.filePath(nome)));
    for (const QString &nome : dove.entryList(QDir::Dirs | QDir::NoDotAndDotDot))
        file.insert(nome + u'/', {});
    return file;
}

// Un archivio con qualcosa di cancellato, perché ci siano pagine libere con righe che non devono
// tornare; ogni prova comincia da una copia sana.
class ProvaCustodia
{
protected:
    std::unique_ptr<QTemporaryDir> m_cartella;
    QString m_percorso;
    QByteArray m_sano;
    QHash<QString, campione::Righe> m_prima;

    QString accanto(const QString &nome) const { return m_cartella->filePath(nome); }
    QString cestino(const QString &nome = {}) const { return accanto(u"Cestino/"_s + nome); }

    void prepara()
    {
        const ArchivioDiProva archivio;
        campione::riempie(connessione(), 60);
        // Il motore di Debian copre ciò che cancella, altri no.
        esegui(u"PRAGMA secure_delete = OFF"_s);
        esegui(u"DELETE FROM Eventi WHERE CAST(substr(Codice, 2) AS INTEGER) BETWEEN 20 AND 30"_s);
        esegui(u"DELETE FROM Binari WHERE Codice IN ('B6', 'B11')"_s);
        m_prima = campione::istantanea(connessione());
        connessione().Close();
        m_sano = byteDi(archivio.percorso());
    }

    void comincia()
    {
        avviaArchivi();
        m_cartella = std::make_unique<QTemporaryDir>();
        m_percorso = accanto(u"prova.tvd"_s);
        scrive(m_percorso, m_sano);
    }
};
