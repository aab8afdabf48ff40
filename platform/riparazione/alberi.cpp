#include "platform/riparazione/alberi.h"

#include <QSet>
#include <QtEndian>

namespace pagine
{

namespace
{

// Le colonne di una riga dello schema.
enum { tipo, nome, tabella, radice, testo, colonneDelloSchema };

} // namespace

Alberi::Alberi(const File &file, const QHash<QString, Albero> &previsti)
    : m_alberi(previsti), m_uso(static_cast<qsizetype>(file.quante()) + 1, Uso::Ignoto)
{
    libere(file);
    const QHash<QString, quint32> trovate = radici(file);
    for (Albero &albero : m_alberi)
        percorre(file, trovate.value(albero.nome), albero);
}

// Lo schema si cerca prima dal suo posto; se non c'è tutto, in ogni foglia del file.
QHash<QString, quint32> Alberi::radici(const File &file)
{
    QHash<QString, quint32> trovate;
    QList<quint32> daVedere{1};
    QSet<quint32> viste;
    while (!daVedere.isEmpty()) {
        const quint32 numero = daVedere.takeLast();
        if (viste.contains(numero))
            continue;
        viste.insert(numero);
        const Pagina pagina = file.pagina(numero);
        if (pagina.genere != Genere::Tabella)
            continue;
        if (pagina.foglia)
            radiciDa(file, numero, trovate);
        else
            daVedere.append(pagina.ultimoFiglio);
        for (const Cella &cella : pagina.celle) {
            if (!pagina.foglia)
                daVedere.append(cella.figlio);
        }
    }
    const auto mancano = [this, &trovate] {
        return std::any_of(m_alberi.cbegin(), m_alberi.cend(), [&trovate](const Albero &albero) {
            return !trovate.contains(albero.nome);
        });
    };
    for (quint32 numero = 1; mancano() && numero <= file.quante(); ++numero)
        radiciDa(file, numero, trovate);
    return trovate;
}

void Alberi::radiciDa(const File &file, quint32 pagina, QHash<QString, quint32> &radici)
{
    const Pagina letta = file.pagina(pagina);
    if (letta.genere != Genere::Tabella || !letta.foglia)
        return;
    for (const Cella &cella : letta.celle) {
        if (cella.lunghezza > 100 * 1024)
            continue;
        const auto riga = Carico(file, cella).colonne();
        if (!riga || riga->size() != colonneDelloSchema || riga->at(nome).tipo != Valore::Testo ||
            riga->at(radice).tipo != Valore::Intero ||
            (riga->at(tipo).byte != "table" && riga->at(tipo).byte != "index"))
            continue;
        const QString suo = QString::fromUtf8(riga->at(nome).byte);
        if (!m_alberi.contains(suo) || radici.contains(suo))
            continue;
        radici.insert(suo, static_cast<quint32>(riga->at(radice).intero));
        m_definizioni.insert(suo, riga->at(testo).byte);
    }
}

// Nelle pagine libere restano righe cancellate, che non devono tornare.
void Alberi::libere(const File &file)
{
    for (quint32 tronco = file.primaLibera(); tronco > 1 && tronco <= file.quante();) {
        const QByteArray byte = file.leggi(tronco);
        if (byte.isEmpty() || m_uso.at(tronco) != Uso::Ignoto)
            return;
        m_uso[tronco] = Uso::Libera;
        const auto quante = qFromBigEndian<quint32>(byte.constData() + 4);
        if (quante > static_cast<quint32>(file.byteUtili() / 4 - 2))
            return;
        for (quint32 i = 0; i < quante; ++i) {
            const auto numero = qFromBigEndian<quint32>(byte.constData() + 8 + 4 * i);
            if (numero > 1 && numero <= file.quante())
                m_uso[numero] = Uso::Libera;
        }
        tronco = qFromBigEndian<quint32>(byte.constData());
    }
}

void Alberi::percorre(const File &file, quint32 prima, Albero &albero)
{
    if (prima < 2) {
        albero.intero = false;
        return;
    }
    QList<quint32> daVedere{prima};
    while (!daVedere.isEmpty()) {
        const quint32 numero = daVedere.takeLast();
        // Una pagina che il file dà per libera può essere viva, se è l'elenco delle libere a essere
        // guasto; una che è già di un altro albero no.
        const bool presa = numero == 0 || numero > file.quante() ||
                           m_uso.at(numero) == Uso::Albero || m_uso.at(numero) == Uso::Seguito;
        const Pagina pagina = presa ? Pagina{} : file.pagina(numero);
        if (pagina.genere != albero.genere) {
            albero.intero = false;
            continue;
        }
        m_uso[numero] = Uso::Albero;
        albero.intero = albero.intero && pagina.guasti == 0;
        albero.pagine.append(numero);
        if (pagina.foglia)
            continue;
        daVedere.append(pagina.ultimoFiglio);
        for (qsizetype i = pagina.celle.size(); i-- > 0;)
            daVedere.append(pagina.celle.at(i).figlio);
    }
}

} // namespace pagine
