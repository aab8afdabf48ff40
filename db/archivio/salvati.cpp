#include "db/archivio/salvati.h"

#include "db/lavoro/codici.h"
#include "db/schema/generi.h"
#include "db/schema/orfani.h"
#include "db/schema/protezione.h"
#include "db/schema/schema.h"
#include "db/schema/tabelle.h"
#include "platform/riparazione/alberi.h"

#include <QRegularExpression>

#include <algorithm>
#include <limits>

namespace modTarvola
{

namespace
{

using pagine::Valore;

const QString tabellaPassword = QStringLiteral("Protezione");
const QString indiceDelCodice = QStringLiteral("sqlite_autoindex_");

// La tabella il cui codice è questo testo, scritto come lo si dà; vuota se non è un codice.
QString tabellaDi(const Valore &valore)
{
    static const QRegularExpression forma(QStringLiteral("\\A[A-Za-z][1-9][0-9]{0,9}\\z"));
    if (valore.tipo != Valore::Testo)
        return {};
    const QString codice = QString::fromUtf8(valore.byte);
    return forma.match(codice).hasMatch() ? tabellaDiCodice(codice) : QString();
}

// Dove i proprietari possono essere di molte tabelle basta che sia un codice.
bool puoNominare(const catalogo::Colonna &colonna, const Valore &valore)
{
    const QString tabella = tabellaDi(valore);
    return colonna.proprietari.size() == 1 ? tabella == colonna.proprietari.front()
                                           : !tabella.isEmpty();
}

bool adatta(const QString &tabella, const Valore &primo, const Valore &secondo)
{
    if (tabella == tabellaPassword)
        return primo.tipo == Valore::Testo && secondo.tipo == Valore::Testo &&
               (primo.byte == "password" || primo.byte.startsWith("numero "));
    if (tabella == QStringLiteral("Traduzioni"))
        return primo.intero > 0 && secondo.tipo == Valore::Intero;
    if (tabelleAccanto().contains(tabella))
        return primo.tipo == Valore::Testo && secondo.tipo == Valore::Testo &&
               tabellaDi(primo).isEmpty();
    const catalogo::Tabella *sua = catalogo::cerca(tabella);
    if (sua != nullptr && sua->forma == catalogo::Forma::Coppie)
        return puoNominare(sua->colonne[0], primo) && puoNominare(sua->colonne[1], secondo);
    return tabellaDi(primo) == tabella;
}

QByteArray codiceNominato(const QString &tabella, const QString &indice, const Valore &primo)
{
    Valore codice = primo;
    if (primo.tipo == Valore::Intero && indice == tabella + QStringLiteral("Numero")) {
        codice.tipo = Valore::Testo;
        codice.byte = tabella.left(1).toLatin1() + QByteArray::number(primo.intero);
    } else if (!indice.startsWith(indiceDelCodice)) {
        return {};
    }
    return tabellaDi(codice) == tabella ? codice.byte : QByteArray();
}

// Il numero più alto che le righe, o gli indici letti, danno alla tabella.
qint64 numeroNominato(ado::Connection &connessione, const QString &tabella)
{
    qint64 massimo = 0;
    const auto cerca = [&](const QString &daDove, const QString &colonna, const QString &dove) {
        const QString numero = QStringLiteral("CAST(substr(%1, 2) AS INTEGER)").arg(colonna);
        massimo =
            qMax(massimo, connessione
                              .valore({QStringLiteral("SELECT max(%1) FROM %2 WHERE %3 AND "
                                                      "upper(substr(%4, 1, 1)) = ? AND %1 < ?")
                                           .arg(numero, daDove, dove, colonna),
                                       {tabella.left(1), std::numeric_limits<qint32>::max()},
                                       {}})
                              .toLongLong());
    };
    for (const catalogo::Legame legame :
         {catalogo::Legame::Contenuto, catalogo::Legame::Sostenuto, catalogo::Legame::Nominato}) {
        for (const catalogo::Posto &posto : catalogo::colonneCon(legame)) {
            if (posto.colonna->specie == catalogo::Specie::Codice)
                cerca(posto.tabella->nome.toString(), posto.colonna->nome.toString(),
                      QStringLiteral("1"));
        }
    }
    cerca(QStringLiteral("temp.attese"), QStringLiteral("codice"),
          QStringLiteral("tabella = '%1'").arg(tabella));
    return massimo;
}

// Lo schema con tutte le tabelle che un archivio può avere: non si sa ancora quali vi fossero.
void creaTutto(ado::Connection &connessione)
{
    connessione.Execute({QStringLiteral("PRAGMA synchronous = OFF"), {}, {}});
    creaSchema(connessione);
    for (const QString &tabella : tabelleAccanto())
        creaAccanto(connessione, tabella);
}

// Un file che non le aveva torna com'era.
void togliAccantoVuote(ado::Connection &connessione)
{
    for (const QString &tabella : tabelleAccanto()) {
        if (!connessione.valore({QStringLiteral("SELECT 1 FROM %1 LIMIT 1").arg(tabella), {}, {}})
                 .isValid())
            connessione.Execute({QStringLiteral("DROP TABLE %1").arg(tabella), {}, {}});
    }
    segnaVersione(connessione);
}

// I codici non ripartono da numeri che le righe salvate nominano ancora: un record nuovo si
// prenderebbe i loro eventi e i loro testi.
void riservaNumeri(ado::Connection &connessione)
{
    for (const QString &tabella : tabelleConCodice()) {
        const qint64 nominato = numeroNominato(connessione, tabella);
        if (nominato > 0)
            connessione.Execute(
                {QStringLiteral("INSERT INTO Protezione VALUES (?1, ?2) ON CONFLICT (Nome) DO "
                                "UPDATE SET Valore = max(CAST(Valore AS INTEGER), ?2)"),
                 {numeroRiservato(tabella), nominato},
                 {}});
    }
}

// Annota da capo chi è senza proprietario: mentre le righe entrano i proprietari di alcune non ci
// sono ancora. Rende quanti record sono, senza i legami e gli operatori, che soli possono essere.
qint64 annotaOrfani(ado::Connection &connessione)
{
    ado::Transazione insieme(connessione);
    connessione.Execute({QStringLiteral("DELETE FROM Orfani"), {}, {}});
    annotaTutto(connessione);
    const qint64 quanti =
        connessione
            .valore({QStringLiteral("SELECT count(DISTINCT Codice) FROM Orfani WHERE Tabella NOT "
                                    "IN ('Soli', 'OperatoriContesti', 'FamiglieConiugi', "
                                    "'FamiglieGenitori')"),
                     {},
                     {}})
            .toLongLong();
    insieme.conferma();
    return quanti;
}

// La tabella di una coppia di famiglia, da ciò che la famiglia e la persona sono; vuota se non si
// sa. In una famiglia di origine il padre e la madre sono la coppia, gli altri i figli.
QString tabellaDiCoppia(ado::Connection &connessione, const Valore &famiglia,
                        const Valore &individuo)
{
    const auto ruolo = [&connessione](const char *tabella, const Valore &codice) {
        return connessione.valore({QStringLiteral("SELECT Ruolo FROM %1 WHERE Codice = ?")
                                       .arg(QString::fromUtf8(tabella)),
                                   {QString::fromUtf8(codice.byte)},
                                   {}});
    };
    const QVariant diFamiglia = ruolo("Famiglie", famiglia);
    const QVariant diIndividuo = ruolo("Individui", individuo);
    if (diFamiglia.toInt() == FamigliaConiuge || eRuoloDiCoppia(diIndividuo.toInt()))
        return QStringLiteral("FamiglieConiugi");
    return diFamiglia.toInt() == FamigliaGenitori && diIndividuo.isValid()
               ? QStringLiteral("FamiglieGenitori")
               : QString();
}

// Vero se uno dei due testi può essere l'altro, con qualche byte rovinato.
bool somiglia(const QByteArray &uno, const QByteArray &altro)
{
    if (uno.size() != altro.size())
        return false;
    qsizetype diversi = 0;
    for (qsizetype i = 0; i < uno.size(); ++i)
        diversi += uno.at(i) == altro.at(i) ? 0 : 1;
    return diversi <= uno.size() / 8;
}

// Di una versione più nuova non si sanno le tabelle.
void rifiutaVersioneNuova(const QString &danneggiato)
{
    if (diVersioneNuova(danneggiato))
        throw ado::Errore(ado::Causa::VersioneNuova,
                          QStringLiteral("il file di archivi è della versione %1, più nuova di "
                                         "quella di questo programma (versione %2)")
                              .arg(pagine::File(danneggiato).versione())
                              .arg(versioneConAccanto));
}

// Vero se la riga dello schema è di qualcosa che questa versione fa.
bool nostra(const pagine::RigaDiSchema &riga)
{
    const QStringList nostre = istruzioniNote();
    return std::any_of(nostre.cbegin(), nostre.cend(),
                       [&riga](const QString &una) { return somiglia(riga.testo, una.toUtf8()); });
}

} // namespace

bool diVersioneNuova(const QString &percorso)
{
    const pagine::File file(percorso);
    if (file.versione() <= versioneConAccanto)
        return false;
    const auto schema = pagine::schemaDi(file);
    return !std::all_of(schema.cbegin(), schema.cend(), [](const pagine::RigaDiSchema &riga) {
        return riga.testo.isEmpty() || nostra(riga);
    });
}

bool siSalverebbe(const QString &percorso, ado::Causa causa)
{
    if (causa != ado::Causa::Danneggiato && causa != ado::Causa::NonArchivio)
        return false;
    try {
        // Lo schema di un archivio sta nelle prime pagine; il salvataggio lo cercherebbe in tutte.
        constexpr quint32 prime = 64;
        const auto schema = pagine::schemaSparso(pagine::File(percorso), prime);
        return std::any_of(schema.cbegin(), schema.cend(), nostra) && !diVersioneNuova(percorso);
    } catch (const ado::Errore &) {
        return false;
    }
}

Salvato salvaArchivio(const QString &danneggiato, const QString &nuovo,
                      const provvisorio::Passo &passo)
{
    rifiutaVersioneNuova(danneggiato);
    ado::Connection connessione;
    connessione.Create(nuovo);
    creaTutto(connessione);
    salvataggio::Regole regole{adatta, codiceNominato, {}};
    regole.adatta = [](const QString &tabella, const Valore &primo, const Valore &secondo) {
        if (!adatta(tabella, primo, secondo))
            return false;
        if (primo.byte != "password")
            return true;
        const Password sua = confrontaPassword(QString::fromUtf8(secondo.byte), passwordArchivi);
        if (sua == Password::Altra)
            throw ado::Errore(ado::Causa::PasswordErrata,
                              QStringLiteral("la password del file è un'altra"));
        return sua == Password::Giusta;
    };
    regole.diCoppia = [&connessione](const Valore &primo, const Valore &secondo) {
        return tabellaDiCoppia(connessione, primo, secondo);
    };
    Salvato esito;
    qint64 righe = 0;
    const auto conti = salvataggio::salva(danneggiato, connessione, regole, passo);
    for (const salvataggio::Conto &conto : conti) {
        if (!tabelle().contains(conto.tabella))
            continue;
        righe += conto.salvate;
        if (conto.perdute > 0 || conto.almeno)
            esito.mancanti.append(conto);
    }
    if (righe == 0)
        throw ado::Errore(ado::Causa::Danneggiato,
                          QStringLiteral("nel file non si legge più nulla degli archivi"));
    togliAccantoVuote(connessione);
    riservaNumeri(connessione);
    esito.senzaProprietario = annotaOrfani(connessione);
    connessione.Close();
    provvisorio::sincronizza(nuovo);
    return esito;
}

} // namespace modTarvola
