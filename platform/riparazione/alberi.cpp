#include "platform/riparazione/alberi.h"

#include <QSet>
#include <QtEndian>

namespace pagine
{

namespace
{

// Le colonne di una riga dello schema.
enum { tipo, nome, tabella, radice, testo, colonneDelloSchema };

// Quelle di una foglia; ciò che non ha la forma di una riga dello schema non conta.
QList<RigaDiSchema> righeDi(const File &file, const Pagina &pagina)
{
    QList<RigaDiSchema> righe;
    if (pagina.genere != Genere::Tabella || !pagina.foglia)
        return righe;
    for (const Cella &cella : pagina.celle) {
        if (cella.lunghezza > 100 * 1024)
            continue;
        const auto riga = Carico(file, cella).colonne();
        if (!riga || riga->size() != colonneDelloSchema || riga->at(tipo).tipo != Valore::Testo ||
            riga->at(nome).tipo != Valore::Testo || riga->at(radice).tipo != Valore::Intero)
            continue;
        righe.append({riga->at(tipo).byte, riga->at(nome).byte,
                      static_cast<quint32>(riga->at(radice).intero), riga->at(testo).byte});
    }
    return righe;
}

// Vero se l'istruzione crea una tabella con la chiave interna.
bool haChiaveInterna(const QByteArray &istruzione)
{
    return !istruzione.isEmpty() && !istruzione.simplified().toUpper().contains("WITHOUT ROWID");
}

} // namespace

Alberi::Alberi(const File &file, const QHash<QString, Albero> &previsti)
    : m_alberi(previsti), m_uso(static_cast<qsizetype>(file.quante()) + 1, Uso::Ignoto)
{
    libere(file);
    const QHash<QString, quint32> trovate = radici(file);
    for (Albero &albero : m_alberi) {
        const quint32 radice = trovate.value(albero.nome);
        // Altri possono aver rifatto una tabella con una chiave interna dove non c'era.
        if (albero.nome == albero.tabella && haChiaveInterna(m_definizioni.value(albero.nome)) &&
            file.pagina(radice).genere == Genere::Tabella)
            albero.genere = Genere::Tabella;
        percorre(file, radice, albero);
    }
}

QList<RigaDiSchema> schemaDi(const File &file)
{
    QList<RigaDiSchema> righe;
    QList<quint32> daVedere{1};
    QSet<quint32> viste;
    while (!daVedere.isEmpty()) {
        const quint32 numero = daVedere.takeLast();
        if (viste.contains(numero))
            continue;
        viste.insert(numero);
        const Pagina pagina = file.pagina(numero);
        righe += righeDi(file, pagina);
        if (pagina.genere != Genere::Tabella || pagina.foglia)
            continue;
        daVedere.append(pagina.ultimoFiglio);
        for (const Cella &cella : pagina.celle)
            daVedere.append(cella.figlio);
    }
    return righe;
}

QList<RigaDiSchema> schemaSparso(const File &file, quint32 pagine)
{
    QList<RigaDiSchema> righe;
    for (quint32 numero = 1; numero <= std::min(pagine, file.quante()); ++numero)
        righe += righeDi(file, file.pagina(numero));
    return righe;
}

// Lo schema si cerca prima dal suo posto; se non c'è tutto, in ogni foglia del file.
QHash<QString, quint32> Alberi::radici(const File &file)
{
    QHash<QString, quint32> trovate;
    radiciDa(schemaDi(file), trovate);
    const auto mancano = [this, &trovate] {
        return std::any_of(m_alberi.cbegin(), m_alberi.cend(), [&trovate](const Albero &albero) {
            return !trovate.contains(albero.nome);
        });
    };
    for (quint32 numero = 1; mancano() && numero <= file.quante(); ++numero)
        radiciDa(righeDi(file, file.pagina(numero)), trovate);
    return trovate;
}

void Alberi::radiciDa(const QList<RigaDiSchema> &righe, QHash<QString, quint32> &radici)
{
    for (const RigaDiSchema &riga : righe) {
        const QString suo = QString::fromUtf8(riga.nome);
        if ((riga.tipo != "table" && riga.tipo != "index") || !m_alberi.contains(suo) ||
            radici.contains(suo))
            continue;
        radici.insert(suo, riga.radice);
        m_definizioni.insert(suo, riga.testo);
    }
}

// Nelle pagine libere restano righe cancellate, che non devono tornare.
void Alberi::libere(const File &file)
{
    for (quint32 tronco = file.primaLibera(); tronco > 1 && tronco <= file.quante();) {
        const QByteArray byte = file.leggi(tronco);
        if (byte.isEmpty() || m_uso.at(tronco) != Uso::Ignoto)
            return;
        const auto quante = qFromBigEndian<quint32>(byte.constData() + 4);
        // Non è una pagina dell'elenco: un'altra ne ha preso il posto, e libera non è.
        if (quante > static_cast<quint32>(file.byteUtili() / 4 - 2))
            return;
        m_uso[tronco] = Uso::Libera;
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
