#include "db/lavoro/lavoro.h"

#include "db/lavoro/codici.h"
#include "db/lavoro/famiglie.h"
#include "db/lavoro/nomi.h"
#include "db/lavoro/operatori.h"
#include "db/schema/generi.h"
#include "db/schema/tabelle.h"
#include "platform/lingua/italiano.h"

#include <exception>
#include <utility>

namespace modTarvola
{

namespace
{

const QString tabellaBinari = QStringLiteral("Binari");

// Quando fu l'ultima volta che si scrisse il record, dove la tabella lo dice.
const QString colonnaModifica = QStringLiteral("Modifica");

bool haModifica(const QString &tabella)
{
    return catalogo::tabella(tabella).colonna(colonnaModifica) != nullptr;
}

// L'ultimo cominciato; ogni filo ha le sue connessioni e i suoi lavori.
thread_local Lavoro *ultimo = nullptr;

ado::Errore scomparso(const QString &codice)
{
    return {ado::Causa::Altro, QStringLiteral("il record %1 non esiste più").arg(codice)};
}

// Il nome della tabella davanti, o il motore prenderebbe per un testo una colonna che non c'è.
QString colonna(const QString &tabella, const QString &nome)
{
    return QStringLiteral("%1.\"%2\"").arg(tabella, nome);
}

QVariant oNull(const QVariant &valore)
{
    const bool vuoto =
        valore.typeId() == QMetaType::QString && valore.toString().trimmed().isEmpty();
    return vuoto ? QVariant() : valore;
}

Record ripulito(Record record)
{
    for (QVariant &valore : record.valori)
        valore = oNull(valore);
    return record;
}

// Un testo non porta il nome di chi l'ha scritto, e un contatto sta col record da cui è nato.
bool siLegaAllOperatore(const Record &record, const QVariantMap &presenti)
{
    if (record.tabella != QStringLiteral("Operatori"))
        return record.tabella != tabellaBinari;
    const QString tipo = QStringLiteral("Tipo");
    return record.valori.value(tipo, presenti.value(tipo)).toInt() != Contatto;
}

} // namespace

// Finché dura, il lavoro è guasto; chi arriva in fondo lo dice sano.
class Lavoro::Tentativo
{
public:
    explicit Tentativo(Lavoro &lavoro) : m_lavoro(lavoro)
    {
        // Di certi guasti il motore annulla tutto da sé: ciò che si scrivesse ora resterebbe.
        if (lavoro.m_guasto || !lavoro.m_connessione.inTransazione())
            throw ado::Errore(ado::Causa::Altro,
                              QStringLiteral("le modifiche in corso sono finite o annullate"));
        lavoro.m_guasto = true;
    }
    void riesce() { m_lavoro.m_guasto = false; }

private:
    Lavoro &m_lavoro;
};

Lavoro::Lavoro(ado::Connection &connessione, QString nome, QString operatore)
    : m_connessione(connessione),
      m_nome(std::move(nome)),
      m_operatore(std::move(operatore)),
      m_prima(ultimo),
      m_esterno([&connessione] {
          Lavoro *altro = ultimo;
          while (altro != nullptr && &altro->m_connessione != &connessione)
              altro = altro->m_prima;
          if (altro != nullptr)
              Tentativo(*altro).riesce();
          else if (connessione.inTransazione())
              throw ado::Errore(ado::Causa::Altro, QStringLiteral("un'altra scrittura è in corso"));
          return altro;
      }()),
      m_transazione(connessione)
{
    if (m_esterno == nullptr)
        m_registrazione = std::make_unique<storia::Registrazione>(connessione);
    if (const auto *sua = registrazione())
        m_pezzi = sua->pezzi();
    ultimo = this;
}

Lavoro::~Lavoro()
{
    ultimo = m_prima;
    if (auto *sua = registrazione(); sua != nullptr && !m_confermato)
        sua->annullatoFino(m_pezzi);
}

storia::Registrazione *Lavoro::registrazione() const
{
    const Lavoro *fuori = this;
    while (fuori->m_esterno != nullptr)
        fuori = fuori->m_esterno;
    return fuori->m_registrazione.get();
}

void Lavoro::senzaStoria()
{
    if (auto *sua = registrazione())
        sua->rinuncia();
}

void Lavoro::aspettaContenuto()
{
    Tentativo tentativo(*this);
    if (auto *sua = registrazione())
        sua->chiudePezzo();
    tentativo.riesce();
}

Scritto Lavoro::scrive(const Record &dato)
{
    Tentativo tentativo(*this);
    const Record record = ripulito(dato);
    const QVariantMap prima = presenti(record);
    Record intero = record;
    for (const QString &nome : colonneConRegole(record.tabella)) {
        if (!intero.valori.contains(nome))
            intero.valori.insert(nome, prima.value(nome));
    }
    const QString motivo = rifiuto(m_connessione, intero);
    if (!motivo.isEmpty()) {
        tentativo.riesce();
        return {{}, motivo};
    }
    verificaProprietario(record.valori.value(colonnaDelProprietario(record.tabella)).toString());
    const bool nuovo = record.codice.isEmpty();
    const QString codice = nuovo ? NuovoCodice(m_connessione, record.tabella)
                                 : prima.value(QStringLiteral("Codice")).toString();
    if (nuovo)
        aggiunge(record, codice);
    if (nuovo || aggiorna(record, prima))
        annota(record.tabella, codice, nuovo ? Cambiamento::Nuovo : Cambiamento::Cambiato);
    if (siLegaAllOperatore(record, prima))
        CollegaOperatore(m_connessione, m_operatore, codice);
    tentativo.riesce();
    return {codice, {}};
}

// Il record com'è nell'archivio, nelle colonne che servono; niente se è nuovo.
QVariantMap Lavoro::presenti(const Record &record) const
{
    if (record.codice.isEmpty())
        return {};
    QStringList nomi = record.valori.keys() + colonneConRegole(record.tabella);
    nomi.append(QStringLiteral("Codice"));
    nomi.removeDuplicates();
    QStringList colonne;
    for (const QString &nome : std::as_const(nomi))
        colonne.append(colonna(record.tabella, nome));
    QVariantMap valori;
    m_connessione.leggi({QStringLiteral("SELECT %1 FROM %2 WHERE Codice = ?")
                             .arg(colonne.join(QStringLiteral(", ")), record.tabella),
                         {record.codice},
                         {}},
                        [&](const ado::Riga &riga) {
                            for (int i = 0; i < riga.colonne(); ++i)
                                valori.insert(nomi.at(i), riga.valore(i));
                            return false;
                        });
    if (valori.isEmpty())
        throw ado::Errore(ado::Causa::Altro, QStringLiteral("il record non esiste più"));
    return valori;
}

void Lavoro::verificaProprietario(const QString &proprietario)
{
    if (!proprietario.isEmpty() && !esiste(m_connessione, proprietario))
        throw ado::Errore(ado::Causa::Altro,
                          QStringLiteral("il record %1, di cui questo fa parte, non esiste più")
                              .arg(proprietario));
}

// Le colonne Null restano fuori, così valgono i valori predefiniti della tabella.
void Lavoro::aggiunge(const Record &record, const QString &codice)
{
    QVariantMap valori = record.valori;
    valori.insert(QStringLiteral("Codice"), codice);
    if (haModifica(record.tabella))
        valori.insert(colonnaModifica, italiano::adesso());
    QStringList nomi;
    QStringList segni;
    QVariantList scritti;
    for (auto uno = valori.cbegin(); uno != valori.cend(); ++uno) {
        if (!uno.value().isValid())
            continue;
        nomi.append(u'"' + uno.key() + u'"');
        segni.append(QStringLiteral("?"));
        scritti.append(uno.value());
    }
    m_connessione.Execute({QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
                               .arg(record.tabella, nomi.join(u','), segni.join(u',')),
                           scritti,
                           {}});
}

// Falso se non c'era nulla da scrivere.
bool Lavoro::aggiorna(const Record &record, const QVariantMap &presenti)
{
    QStringList assegnazioni;
    QVariantList scritti;
    const auto assegna = [&](const QString &nome, const QVariant &valore) {
        assegnazioni.append(QStringLiteral("\"%1\" = ?").arg(nome));
        scritti.append(valore);
    };
    for (auto uno = record.valori.cbegin(); uno != record.valori.cend(); ++uno) {
        const QVariant prima = presenti.value(uno.key());
        if (prima != uno.value() || prima.isValid() != uno.value().isValid())
            assegna(uno.key(), uno.value());
    }
    if (haModifica(record.tabella))
        assegna(colonnaModifica, italiano::adesso());
    if (assegnazioni.isEmpty())
        return false;
    scritti.append(record.codice);
    m_connessione.Execute({QStringLiteral("UPDATE %1 SET %2 WHERE Codice = ?")
                               .arg(record.tabella, assegnazioni.join(QStringLiteral(", "))),
                           scritti,
                           {}});
    return true;
}

void Lavoro::collega(const QString &operatore, const QString &record)
{
    Tentativo tentativo(*this);
    verificaProprietario(record);
    CollegaOperatore(m_connessione, operatore, record);
    annota(QStringLiteral("OperatoriContesti"), record, Cambiamento::Cambiato);
    tentativo.riesce();
}

void Lavoro::scollega(const QString &operatore, const QString &record)
{
    Tentativo tentativo(*this);
    ScollegaOperatore(m_connessione, operatore, record);
    annota(QStringLiteral("OperatoriContesti"), record, Cambiamento::Eliminato);
    tentativo.riesce();
}

void Lavoro::iscrive(Posto posto, const QString &individuo, const QString &famiglia)
{
    Tentativo tentativo(*this);
    for (const QString &uno : {individuo, famiglia}) {
        if (!esiste(m_connessione, uno))
            throw scomparso(uno);
    }
    const bool coniuge = posto == Posto::Coniuge;
    if (coniuge)
        AggiungiFamigliaConiugi(m_connessione, individuo, famiglia);
    else
        AggiungiFamigliaGenitori(m_connessione, individuo, famiglia);
    annota(coniuge ? QStringLiteral("FamiglieConiugi") : QStringLiteral("FamiglieGenitori"),
           famiglia, Cambiamento::Nuovo);
    tentativo.riesce();
}

void Lavoro::elimina(const QString &codice, const Avanzata &avanza)
{
    Tentativo tentativo(*this);
    storia::Registrazione *sua = registrazione();
    Tolti tolti(m_connessione, codice);
    bool troppo = false;
    const auto procede = [&](int compiuti, int totale) {
        troppo = sua->troppo();
        return !troppo && (!avanza || avanza(compiuti, totale));
    };
    const Seguito seguito{
        [&](const QString &tabella, const QString &dove, const QVariantList &valori) {
            sua->primaDiTogliere(tabella, dove, valori);
        },
        [&](const QString &tabella, int quante) {
            tolti.conta(tabella, quante);
            if (sua->troppo())
                throw storia::TroppoGrande();
        }};
    QStringList svuotate;
    try {
        svuotate = modTarvola::elimina(m_connessione, codice, m_operatore, procede, seguito);
    } catch (const ado::Errore &) {
        if (troppo)
            throw storia::TroppoGrande();
        throw;
    }
    const catalogo::Tabella *tabellaSua = catalogo::diCodice(codice);
    const QString suaTabella = tabellaSua == nullptr ? QString() : tabellaSua->nome.toString();
    if (svuotate.contains(suaTabella))
        annota(suaTabella, codice, Cambiamento::Eliminato);
    for (const QString &tabella : svuotate) {
        if (tabella != suaTabella)
            annota(tabella, {}, Cambiamento::Eliminato);
    }
    if (m_nome.isEmpty()) {
        tolti.diCuiFile(sua->file());
        m_nome = tolti.nome();
    }
    tentativo.riesce();
}

void Lavoro::annota(const QString &tabella, const QString &codice, Cambiamento::Specie specie)
{
    m_cambiamenti.append({tabella, codice, specie});
}

void Lavoro::conferma()
{
    Tentativo tentativo(*this);
    if (m_registrazione)
        m_registrazione->conferma(m_nome);
    m_transazione.conferma();
    m_confermato = true;
    if (m_esterno == nullptr) {
        annuncia();
        return;
    }
    m_esterno->m_cambiamenti += m_cambiamenti;
    if (m_esterno->m_nome.isEmpty())
        m_esterno->m_nome = m_nome;
}

// Ciò che è registrato lo è: chi ascolta non può farlo sembrare fallito.
void Lavoro::annuncia()
{
    if (m_cambiamenti.isEmpty())
        return;
    try {
        emit annunci().avvenuto({m_nome, m_connessione.Properties(QStringLiteral("Data Source")),
                                 &m_connessione, m_cambiamenti});
    } catch (const std::exception &errore) {
        qWarning("%s", errore.what());
    }
}

} // namespace modTarvola
