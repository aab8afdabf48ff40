#include "db/archivio/conversione.h"

#include "db/archivio/confronto.h"
#include "db/archivio/connessioni.h"
#include "db/schema/orfani.h"
#include "db/schema/protezione.h"
#include "db/schema/schema.h"
#include "platform/disco/provvisorio.h"
#include "platform/motore/flusso.h"

#include <QFile>

#include <algorithm>
#include <utility>

namespace modTarvola
{

namespace
{

constexpr int righePerPasso = 64;

struct Annullata {
};

// Una tabella mentre si converte. Le rifiutate, per numero d'ordine, si saltano nel confronto.
struct Lavoro {
    Corrispondenza corrispondenza;
    TabellaConvertita esito;
    std::vector<quint32> rifiutate;
};

class Conversione
{
public:
    Conversione(const QString &vecchio, QString nuovo, const PassoConversione &passo)
        : m_fonte(vecchio, passwordArchivi),
          m_catalogo(m_fonte),
          m_nuovo(std::move(nuovo)),
          m_passo(passo)
    {
    }

    void accosta();
    void scrive();
    void confronta();
    Resoconto resoconto() const;

private:
    void creaFile();
    void sospende(ado::Connection &archivio);
    void scriveTabella(Lavoro &lavoro);
    bool scriveRiga(Lavoro &lavoro, Lettura &lettura, ado::Comando &inserimento);
    void scriveByte(const Corrispondenza &come, Lettura &lettura, qint64 lunghezza);
    void avanza(const Lettura &lettura);

    jet::Pagine m_fonte;
    jet::Catalogo m_catalogo;
    QString m_nuovo;
    const PassoConversione &m_passo;
    ado::Connection m_archivio;
    QStringList m_sospese;
    std::vector<Lavoro> m_lavori;
    qint64 m_massimo = 0;
    qint64 m_fatto = 0;
};

void Conversione::accosta()
{
    creaFile();
    m_archivio.Open(stringaDiConnessione(m_nuovo));
    m_archivio.Execute({QStringLiteral("PRAGMA journal_mode = MEMORY"), {}, {}});
    m_massimo = ado::lunghezzaMassima(m_archivio);
    for (const QString &nome : tabelle()) {
        Corrispondenza corrispondenza(catalogo::tabella(nome), m_catalogo.tabella(nome));
        TabellaConvertita esito;
        esito.nome = nome;
        esito.annunciate = corrispondenza.fonte().righe;
        esito.colonneIgnote = corrispondenza.ignote();
        esito.colonneMancanti = corrispondenza.mancanti();
        m_lavori.push_back({std::move(corrispondenza), std::move(esito), {}});
    }
}

// Il file non è ancora di nessuno: se manca la corrente si ricomincia. Va sul disco una volta sola,
// alla conferma di ciò che vi si scrive.
void Conversione::creaFile()
{
    // Una connessione a parte: le sue molte istruzioni non tornano, e non tolgono il posto a quelle
    // che si ripetono a ogni riga.
    ado::Connection archivio;
    archivio.Create(m_nuovo);
    archivio.Execute({QStringLiteral("PRAGMA journal_mode = MEMORY"), {}, {}});
    archivio.Execute({QStringLiteral("PRAGMA synchronous = OFF"), {}, {}});
    creaSchema(archivio);
    sospende(archivio);
}

void Conversione::avanza(const Lettura &lettura)
{
    const qint64 totale = 2 * qint64{m_fonte.quante()};
    const qint64 fatto = m_fatto + lettura.pagineLette();
    if (!m_passo(qMin(fatto, totale), totale))
        throw Annullata();
}

void Conversione::scrive()
{
    ado::Transazione transazione(m_archivio);
    m_archivio.Execute({QStringLiteral("DELETE FROM Traduzioni"), {}, {}});
    for (Lavoro &lavoro : m_lavori)
        scriveTabella(lavoro);
    for (const QString &istruzione : std::as_const(m_sospese))
        m_archivio.Execute({istruzione, {}, {}});
    annotaTutto(m_archivio);
    transazione.conferma();
}

// Toglie indici e regole, e tiene le istruzioni per rifarli alla fine: si scrive più in fretta, e i
// proprietari possono venire dopo ciò che è loro.
void Conversione::sospende(ado::Connection &archivio)
{
    QStringList togliere;
    archivio.leggi({QStringLiteral("SELECT type, name, sql FROM sqlite_schema WHERE sql IS NOT "
                                   "NULL AND type IN ('index', 'trigger') ORDER BY type"),
                    {},
                    {}},
                   [&](const ado::Riga &riga) {
                       togliere.append(
                           QStringLiteral("DROP %1 \"%2\"").arg(riga.testo(0), riga.testo(1)));
                       m_sospese.append(riga.testo(2));
                       return true;
                   });
    for (const QString &istruzione : togliere)
        archivio.Execute({istruzione, {}, {}});
}

void Conversione::scriveTabella(Lavoro &lavoro)
{
    const QStringList &colonne = lavoro.corrispondenza.colonne();
    const QStringList segni(colonne.size(), QStringLiteral("?"));
    // Una riga senza codice, o con un codice già preso, non entra: il motore la lascia fuori.
    ado::Comando inserimento{QStringLiteral("INSERT OR IGNORE INTO %1 (\"%2\") VALUES (%3)")
                                 .arg(lavoro.corrispondenza.tabella(),
                                      colonne.join(QStringLiteral("\",\"")), segni.join(u',')),
                             QVariantList(colonne.size()),
                             {}};
    constexpr size_t rifiutateMassime = 1'000'000;
    Lettura lettura(m_fonte, lavoro.corrispondenza.fonte());
    while (lettura.righe.prossima()) {
        if (!scriveRiga(lavoro, lettura, inserimento))
            lavoro.rifiutate.push_back(static_cast<quint32>(lettura.righe.lette()));
        if (lavoro.rifiutate.size() > rifiutateMassime)
            throw ado::Errore(ado::Causa::Danneggiato,
                              QStringLiteral("il file è danneggiato: troppe righe senza un codice "
                                             "proprio"));
        if (lettura.righe.lette() % righePerPasso == 0)
            avanza(lettura);
    }
    m_fatto += lettura.pagineLette();
    lavoro.esito.lette = lettura.righe.lette();
    lavoro.esito.righeGuaste = lettura.righe.righeGuaste();
    lavoro.esito.pagineGuaste = lettura.righe.pagineGuaste();
    lavoro.esito.rifiutate = static_cast<qint64>(lavoro.rifiutate.size());
}

// Falso se la riga non può entrare.
bool Conversione::scriveRiga(Lavoro &lavoro, Lettura &lettura, ado::Comando &inserimento)
{
    const Corrispondenza &come = lavoro.corrispondenza;
    RigaLetta riga = come.legge(lettura, m_massimo);
    // Una chiave numerica Null il motore la riempirebbe da sé.
    const bool conChiave =
        std::all_of(come.chiave().begin(), come.chiave().end(),
                    [&riga](qsizetype posto) { return riga.valori.at(posto).isValid(); });
    inserimento.valori = std::move(riga.valori);
    if (!conChiave || m_archivio.Execute(inserimento) == 0)
        return false;
    if (riga.lungo.specie == ContenutoLungo::Byte)
        scriveByte(come, lettura, riga.lungo.lunghezza);
    lavoro.esito.valoriGuasti += riga.guasti;
    return true;
}

void Conversione::scriveByte(const Corrispondenza &come, Lettura &lettura, qint64 lunghezza)
{
    const QString campo = come.colonne().at(come.postoLungo());
    const QVariant riga = m_archivio.valore({QStringLiteral("SELECT last_insert_rowid()"), {}, {}});
    m_archivio.Execute({QStringLiteral("UPDATE %1 SET %2 = zeroblob(?) WHERE rowid = ?")
                            .arg(come.tabella(), campo),
                        {lunghezza, riga},
                        {}});
    ado::Stream arrivo(m_archivio, come.tabella(), campo, riga.toLongLong(),
                       ado::Stream::Scrittura);
    come.porta(lettura, [&](const QByteArray &pezzo) {
        arrivo.Write(pezzo);
        avanza(lettura);
        return true;
    });
}

void Conversione::confronta()
{
    // Si rilegge come si aprirà: dal disco, con le verifiche di ogni apertura.
    m_archivio.Close();
    apriFile(m_archivio, m_nuovo);
    verificaSchema(m_archivio);
    const QVariant integro = m_archivio.valore({QStringLiteral("PRAGMA integrity_check"), {}, {}});
    if (integro.toString() != QStringLiteral("ok"))
        throw ado::Errore(ado::Causa::Danneggiato, integro.toString());
    // In una transazione sola il motore non chiude e riapre il file a ogni riga.
    const ado::Transazione insieme(m_archivio);
    qint64 inQuesta = 0;
    Confronto confronto(m_archivio, m_fonte, m_massimo, [&](const Lettura &lettura) {
        inQuesta = lettura.pagineLette();
        avanza(lettura);
    });
    for (const Lavoro &lavoro : m_lavori) {
        confronto.tabella(lavoro.corrispondenza, lavoro.rifiutate, lavoro.esito.lette);
        m_fatto += std::exchange(inQuesta, 0);
    }
}

Resoconto Conversione::resoconto() const
{
    Resoconto tutto;
    for (const Lavoro &lavoro : m_lavori)
        tutto.tabelle.append(lavoro.esito);
    QStringList presi = tabelle();
    for (const QString &nome : m_catalogo.nomi()) {
        const auto posto = std::find_if(presi.begin(), presi.end(), [&nome](const QString &uno) {
            return uno.compare(nome, Qt::CaseInsensitive) == 0;
        });
        if (posto == presi.end())
            tutto.tabelleIgnote.append(nome);
        else
            presi.erase(posto);
    }
    tutto.catalogoIntero = m_catalogo.intero();
    return tutto;
}

} // namespace

bool TabellaConvertita::intera() const
{
    return lette == annunciate && rifiutate == 0 && righeGuaste == 0 && pagineGuaste == 0 &&
           valoriGuasti == 0 && colonneIgnote.isEmpty() && colonneMancanti.isEmpty();
}

bool Resoconto::intero() const
{
    return tabelleIgnote.isEmpty() && catalogoIntero &&
           std::all_of(tabelle.begin(), tabelle.end(),
                       [](const TabellaConvertita &una) { return una.intera(); });
}

bool diFormatoAnteriore(const QString &percorso)
{
    return jet::riconosce(percorso);
}

void verificaFormatoAnteriore(const QString &percorso)
{
    jet::Pagine pagine(percorso, passwordArchivi);
    const jet::Catalogo catalogo(pagine);
    for (const QString &nome : tabelle())
        catalogo.tabella(nome);
}

std::optional<Resoconto> converte(const QString &vecchio, const QString &nuovo,
                                  const PassoConversione &passo)
{
    if (QFile::exists(nuovo))
        throw ado::Errore(ado::Causa::Altro, QStringLiteral("il file esiste già"));
    const auto toglie = [&nuovo] {
        QFile::remove(nuovo);
        for (const QString &suo : provvisorio::accanto(nuovo))
            QFile::remove(suo);
    };
    try {
        Conversione conversione(vecchio, nuovo, passo);
        conversione.accosta();
        conversione.scrive();
        conversione.confronta();
        return conversione.resoconto();
    } catch (const Annullata &) {
        toglie();
        return std::nullopt;
    } catch (...) {
        toglie();
        throw;
    }
}

} // namespace modTarvola
