#pragma once

#include "db/archivio/connessioni.h"
#include "db/schema/modello.h"
#include "platform/motore/ado.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace modTarvola;

// Quante volte una prova che va a caso ripete: poche, o quante ne dice TARVOLA_GUASTI, con cui
// faults.sh le fa andare fino in fondo.
inline int volte(int poche)
{
    return qMax(poche, qEnvironmentVariableIntValue("TARVOLA_GUASTI"));
}

// Un archivio nuovo, nato dal modello in una cartella che sparisce con lui, e reso corrente. I
// valori condivisi che riguardano gli archivi ripartono da capo.
class ArchivioDiProva
{
public:
    ArchivioDiProva() : m_percorso(m_cartella.filePath(u"prova.tvd"_s))
    {
        avviaArchivi();
        creaModello(m_percorso);
        ApriArchivio(m_percorso);
    }

    const QString &percorso() const { return m_percorso; }
    QString accanto(const QString &nome) const { return m_cartella.filePath(nome); }

private:
    QTemporaryDir m_cartella;
    QString m_percorso;
};

// Un archivio aperto a parte, che non diventa il corrente.
struct Aparte : ado::Connection {
    explicit Aparte(const QString &percorso) { Open(modTarvola::stringaDiConnessione(percorso)); }
    void esegui(const QString &testo, const QVariantList &valori = {})
    {
        Execute({testo, valori, {}});
    }
    QVariant legge(const QString &testo, const QVariantList &valori = {})
    {
        return valore({testo, valori, {}});
    }
};

inline int esegui(const QString &testo, const QVariantList &valori = {})
{
    return modTarvola::connessione().Execute({testo, valori, {}});
}

inline QVariant legge(const QString &testo, const QVariantList &valori = {})
{
    return modTarvola::connessione().valore({testo, valori, {}});
}

inline int righe(const QString &tabella)
{
    return legge(QStringLiteral("SELECT count(*) FROM ") + tabella).toInt();
}

// Il primo campo di ogni riga, come testo; "(Null)" dove è Null.
inline QStringList colonna(const QString &testo, const QVariantList &valori = {})
{
    QStringList letti;
    modTarvola::connessione().leggi({testo, valori, {}}, [&letti](const ado::Riga &riga) {
        letti.append(riga.nullo(0) ? QStringLiteral("(Null)") : riga.testo(0));
        return true;
    });
    return letti;
}

// L'errore con cui la funzione fallisce; un testo vuoto se non fallisce.
template <class Funzione>
ado::Errore errore(Funzione funzione)
{
    try {
        funzione();
    } catch (const ado::Errore &trovato) {
        return trovato;
    }
    return {ado::Causa::Altro, QString()};
}

inline QByteArray byteDi(const QString &percorso)
{
    QFile file(percorso);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

inline void scrive(const QString &percorso, const QByteArray &byte)
{
    QFile file(percorso);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(byte), byte.size());
}

// Il passo di un lavoro che nessuno interrompe.
inline bool avanti(qint64 /*fatto*/, qint64 /*totale*/)
{
    return true;
}
