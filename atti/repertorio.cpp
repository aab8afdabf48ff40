#include "atti/repertorio.h"

#include "db/archivio/connessioni.h"
#include "db/atto/registro_atti.h"
#include "db/lavoro/annunci.h"

#include <QThread>
#include <QTimer>

using namespace modTarvola;

namespace
{

// Quanti se ne leggono senza che chi apre la pagina se ne accorga, e quanti poi.
constexpr int attiSubito = 8;
constexpr int attiPoi = 200;
// Di un lavoro che ne cambia di più si rilegge tutto, quando è passato un poco dall'ultimo.
constexpr qsizetype cambiamentiAlPiu = 200;
constexpr int attesaMillisecondi = 3000;

std::vector<std::weak_ptr<Repertorio>> &aperti()
{
    static std::vector<std::weak_ptr<Repertorio>> tutti;
    return tutti;
}

void imparaTutto(Repertorio::DiRegistro &registro, const Atto &atto)
{
    registro.recenti.impara(atto);
    registro.coppie.impara(atto);
    registro.abitudini.impara(atto);
    registro.imparati.insert(atto.codice);
}

} // namespace

std::shared_ptr<Repertorio> Repertorio::di(ado::Connection &connessione, const QString &percorso)
{
    auto &tutti = aperti();
    std::erase_if(tutti, [](const auto &uno) { return uno.expired(); });
    for (const auto &uno : tutti) {
        auto suo = uno.lock();
        if (suo && &suo->m_connessione == &connessione)
            return suo;
    }
    std::shared_ptr<Repertorio> nuovo(new Repertorio(connessione, percorso));
    tutti.push_back(nuovo);
    return nuovo;
}

Repertorio::Repertorio(ado::Connection &connessione, QString percorso)
    : m_connessione(connessione),
      m_percorso(std::move(percorso)),
      m_archivio(Vocabolario::Ampiezza::Archivio),
      m_prosegue(std::make_shared<std::atomic<bool>>(true)),
      m_piuTardi(new QTimer(this))
{
    const auto tolte = proposteTolte(connessione);
    m_tolte = QSet<PropostaTolta>(tolte.begin(), tolte.end());
    m_piuTardi->setSingleShot(true);
    m_piuTardi->setInterval(attesaMillisecondi);
    connect(m_piuTardi, &QTimer::timeout, this, &Repertorio::rilegge);
    // Più tardi, quando chi ha scritto ha finito.
    connect(&annunci(), &Annunci::avvenuto, this, &Repertorio::riceve, Qt::QueuedConnection);
    leggeLArchivio();
}

Repertorio::~Repertorio()
{
    ferma();
}

void Repertorio::ferma()
{
    *m_prosegue = false;
    for (const auto &filo : m_fili)
        filo->wait();
    m_fili.clear();
    m_letture = 0;
}

// Ogni lettura ha un filo e una connessione suoi; ciò che rende è compiuto nel filo delle finestre,
// se nessuno l'ha fermata prima.
void Repertorio::avvia(const Lettura &lettura)
{
    const auto prosegue = m_prosegue;
    const auto legge = [this, lettura, prosegue] {
        Consegna consegna;
        try {
            ado::Connection connessione;
            connessione.Open(stringaDiConnessione(m_percorso));
            consegna = lettura(connessione, [prosegue] { return prosegue->load(); });
        } catch (const ado::Errore &errore) {
            consegna = [this, testo = errore.testo()] { m_motivo = testo; };
        }
        if (!*prosegue)
            return;
        QMetaObject::invokeMethod(this, [this, consegna, prosegue] {
            if (!*prosegue)
                return;
            --m_letture;
            consegna();
        });
    };
    ++m_letture;
    m_fili.emplace_back(QThread::create(legge))->start();
}

void Repertorio::leggeLArchivio()
{
    avvia([this](ado::Connection &connessione, const Prosegue &prosegue) {
        auto letto = std::make_shared<Vocabolario>(leggeArchivio(connessione, prosegue));
        auto coppie = std::make_shared<Coppie>(leggeCoppie(connessione, prosegue));
        return [this, letto, coppie] {
            m_archivio = std::move(*letto);
            m_coppie = std::move(*coppie);
        };
    });
}

// Gli ultimi atti, che sono i più utili; poi, quando ci sono, il registro intero.
void Repertorio::leggeIlRegistro(const QString &codice)
{
    avvia([this, codice](ado::Connection &connessione, const Prosegue &prosegue) {
        auto letto = std::make_shared<DiRegistro>();
        LetturaLenta lettura(connessione, prosegue);
        const QStringList atti =
            lettura.riprova([&] { return ultimiAtti(connessione, codice, attiPoi); });
        for (const QString &uno : atti) {
            if (const auto atto = lettura.riprova([&] { return leggeAtto(connessione, uno); }))
                imparaTutto(*letto, *atto);
        }
        return [this, codice, letto] {
            DiRegistro &suo = m_registri[codice];
            // Chi è stato scritto intanto lo si impara di nuovo.
            const QSet<QString> intanto = suo.imparati - letto->imparati;
            suo = std::move(*letto);
            for (const QString &uno : intanto)
                impara(uno, true);
            leggeIntero(codice);
        };
    });
}

void Repertorio::leggeIntero(const QString &codice)
{
    avvia([this, codice](ado::Connection &connessione, const Prosegue &prosegue) {
        auto letto = std::make_shared<Vocabolario>(leggeRegistro(connessione, codice, prosegue));
        return [this, codice, letto] { m_registri[codice].intero = std::move(*letto); };
    });
}

const Repertorio::DiRegistro &Repertorio::registro(const QString &codice)
{
    const auto gia = m_registri.find(codice);
    if (gia != m_registri.end())
        return gia->second;
    DiRegistro suo;
    for (const QString &uno : ultimiAtti(m_connessione, codice, attiSubito)) {
        if (const auto atto = leggeAtto(m_connessione, uno))
            imparaTutto(suo, *atto);
    }
    leggeIlRegistro(codice);
    return m_registri.emplace(codice, std::move(suo)).first->second;
}

Repertorio::Strati Repertorio::strati(const QString &codice)
{
    const DiRegistro &suo = registro(codice);
    return {&suo.recenti, &suo.intero, &m_altrove, &m_archivio};
}

size_t Repertorio::byte() const
{
    size_t somma = m_archivio.byte() + m_altrove.byte() + m_coppie.byte();
    for (const auto &[codice, suo] : m_registri)
        somma += suo.recenti.byte() + suo.intero.byte() + suo.coppie.byte();
    return somma;
}

void Repertorio::toglie(const PropostaTolta &una)
{
    toglieProposta(m_connessione, una);
    m_tolte.insert(una);
}

void Repertorio::rimette(const PropostaTolta &una)
{
    rimetteProposta(m_connessione, una);
    m_tolte.remove(una);
}

// Il vecchio se ne va prima che venga il nuovo: insieme terrebbero il doppio.
void Repertorio::rilegge()
{
    ferma();
    m_prosegue = std::make_shared<std::atomic<bool>>(true);
    m_motivo.clear();
    m_archivio = Vocabolario(Vocabolario::Ampiezza::Archivio);
    m_altrove = Vocabolario();
    m_coppie = Coppie();
    leggeLArchivio();
    for (const auto &[codice, suo] : m_registri)
        leggeIlRegistro(codice);
}

void Repertorio::riceve(const Annuncio &annuncio)
{
    if (!stessoFile(annuncio.archivio, m_percorso))
        return;
    bool daRileggere = annuncio.cambiamenti.size() > cambiamentiAlPiu;
    QMap<QString, bool> atti; // se è nuovo
    try {
        for (const Cambiamento &uno : annuncio.cambiamenti) {
            const bool diPersone = uno.tabella == QStringLiteral("Individui") ||
                                   uno.tabella == QStringLiteral("Eventi");
            const bool atto = uno.tabella == QStringLiteral("Voci");
            daRileggere =
                daRileggere || (uno.specie == Cambiamento::Eliminato && (diPersone || atto));
            if (daRileggere)
                break;
            if (atto && uno.specie == Cambiamento::Nuovo)
                atti.insert(uno.codice, true);
            else if (diPersone && !atti.value(attoDi(m_connessione, uno.codice)))
                atti.insert(attoDi(m_connessione, uno.codice), false);
        }
        if (daRileggere)
            return m_piuTardi->start();
        for (const auto &[codice, nuovo] : atti.toStdMap())
            impara(codice, nuovo);
    } catch (const ado::Errore &errore) {
        m_motivo = errore.testo();
    }
}

void Repertorio::impara(const QString &codice, bool nuovo)
{
    const auto atto = leggeAtto(m_connessione, codice);
    if (!atto)
        return;
    const auto suo = m_registri.find(atto->registro);
    const bool vicino = suo != m_registri.end();
    if (vicino && nuovo && !suo->second.imparati.contains(codice))
        imparaTutto(suo->second, *atto);
    else
        (vicino ? suo->second.recenti : m_altrove).impara(*atto, vicino || !nuovo);
    m_coppie.impara(*atto);
}
