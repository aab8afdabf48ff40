#include "db/schema/orfani.h"

namespace modTarvola
{

namespace
{

using catalogo::Colonna;
using catalogo::Forma;
using catalogo::Legame;
using catalogo::Posto;
using catalogo::Tabella;

// Le colonne con cui una riga si ritrova: il codice, o la coppia delle tabelle di legame.
QString identita(const Tabella &tabella, QStringView riga)
{
    const auto chiave = tabella.chiave();
    return chiave.size() == 1
               ? QStringLiteral("%1.%2, ''").arg(riga, chiave[0].nome)
               : QStringLiteral("%1.%2, %1.%3").arg(riga, chiave[0].nome, chiave[1].nome);
}

// Chi può essere proprietario annota il proprio codice quando scompare.
void sorvegliaProprietari(QStringList &testi)
{
    for (const Tabella &tabella : catalogo::tutte()) {
        if (catalogo::dipendentiDi(tabella.nome, Legame::Sostenuto).isEmpty())
            continue;
        const QString annota =
            QStringLiteral("BEGIN INSERT OR IGNORE INTO Scomparsi VALUES ('%1', OLD.Codice); END")
                .arg(tabella.nome);
        testi.append(
            QStringLiteral("CREATE TRIGGER %1Eliminato AFTER DELETE ON %1 ").arg(tabella.nome) +
            annota);
        testi.append(QStringLiteral("CREATE TRIGGER %1Rinominato AFTER UPDATE OF Codice ON "
                                    "%1 WHEN OLD.Codice <> NEW.Codice ")
                         .arg(tabella.nome) +
                     annota);
    }
}

void sorvegliaAppartenenze(QStringList &testi)
{
    for (const Posto &posto : catalogo::colonneCon(Legame::Sostenuto)) {
        const Tabella &tabella = *posto.tabella;
        const QStringView colonna = posto.colonna->nome;
        const QString seManca =
            QStringLiteral("WHEN %1 BEGIN INSERT OR IGNORE INTO Orfani VALUES ('%2', %3); END")
                .arg(senzaProprietario(u"NEW", *posto.colonna), tabella.nome,
                     identita(tabella, u"NEW"));
        testi.append(QStringLiteral("CREATE TRIGGER %1%2Inserito AFTER INSERT ON %1 %3")
                         .arg(tabella.nome, colonna, seManca));
        // Anche una riga che cambia il proprio codice va annotata da capo.
        const QString quando = tabella.forma == Forma::Coppie
                                   ? QString()
                                   : QStringLiteral(" OF Codice, %1").arg(colonna);
        testi.append(QStringLiteral("CREATE TRIGGER %1%2Cambiato AFTER UPDATE%4 ON %1 %3")
                         .arg(tabella.nome, colonna, seManca, quando));
    }
}

// Un record nasce senza coppie; la prima che lo nomina ne toglie l'annotazione, l'ultima che se ne
// va la rimette.
void sorvegliaCoppie(QStringList &testi, const Tabella &coppie, QStringView segno)
{
    const QStringView colonna = coppie.colonne.front().nome;
    testi.append(
        QStringLiteral("CREATE TRIGGER %1Legato AFTER INSERT ON %1 BEGIN DELETE FROM Orfani "
                       "WHERE Tabella = '%3' AND Codice = NEW.%2 AND Altro = ''; END")
            .arg(coppie.nome, colonna, segno));
    for (const QString &quando : {QStringLiteral("DELETE"), QStringLiteral("UPDATE")})
        testi.append(QStringLiteral("CREATE TRIGGER %1Sciolto%4 AFTER %4 ON %1 WHEN NOT EXISTS "
                                    "(SELECT 1 FROM %1 WHERE %2 = OLD.%2) BEGIN "
                                    "INSERT OR IGNORE INTO Orfani VALUES ('%3', OLD.%2, ''); END")
                         .arg(coppie.nome, colonna, segno, quando));
}

void sorvegliaSolitari(QStringList &testi)
{
    for (const Tabella &tabella : catalogo::tutte()) {
        if (tabella.senzaCoppie.isEmpty())
            continue;
        for (const QString &quando : {QStringLiteral("INSERT"), QStringLiteral("UPDATE OF Codice")})
            testi.append(
                QStringLiteral("CREATE TRIGGER %1%2%4 AFTER %3 ON %1 BEGIN "
                               "INSERT OR IGNORE INTO Orfani VALUES ('%2', NEW.Codice, ''); END")
                    .arg(tabella.nome, tabella.senzaCoppie, quando, quando.left(6)));
        for (const Tabella *coppie : catalogo::coppieDi(tabella))
            sorvegliaCoppie(testi, *coppie, tabella.senzaCoppie);
    }
}

} // namespace

QString senzaProprietario(QStringView riga, const Colonna &colonna)
{
    QStringList condizioni;
    for (const QStringView proprietario : colonna.proprietari)
        condizioni.append(QStringLiteral("NOT EXISTS (SELECT 1 FROM %1 WHERE %1.Codice = %2.%3)")
                              .arg(proprietario, riga, colonna.nome));
    return condizioni.join(QStringLiteral(" AND "));
}

QString senzaCoppie(const Tabella &tabella)
{
    QStringList condizioni;
    for (const Tabella *coppie : catalogo::coppieDi(tabella))
        condizioni.append(QStringLiteral("NOT EXISTS (SELECT 1 FROM %1 WHERE %2 = %3.Codice)")
                              .arg(coppie->nome, coppie->colonne.front().nome, tabella.nome));
    return condizioni.join(QStringLiteral(" AND "));
}

QStringList istruzioniDiSorveglianza()
{
    QStringList testi{QStringLiteral("CREATE TABLE Scomparsi (Tabella TEXT NOT NULL, Codice TEXT "
                                     "NOT NULL COLLATE NOCASE, PRIMARY KEY (Tabella, Codice)) "
                                     "WITHOUT ROWID"),
                      QStringLiteral("CREATE TABLE Orfani (Tabella TEXT NOT NULL, Codice TEXT NOT "
                                     "NULL COLLATE NOCASE, Altro TEXT NOT NULL COLLATE NOCASE, "
                                     "PRIMARY KEY (Tabella, Codice, Altro)) WITHOUT ROWID")};
    sorvegliaProprietari(testi);
    sorvegliaAppartenenze(testi);
    sorvegliaSolitari(testi);
    return testi;
}

void annotaTutto(ado::Connection &connessione)
{
    const auto annota = [&connessione](const QString &segno, const Tabella &tabella,
                                       const QString &condizione) {
        connessione.Execute(
            {QStringLiteral("INSERT OR IGNORE INTO Orfani SELECT '%1', %2 FROM %3 WHERE %4")
                 .arg(segno, identita(tabella, tabella.nome), tabella.nome, condizione),
             {},
             {}});
    };
    for (const Posto &posto : catalogo::colonneCon(Legame::Sostenuto))
        annota(posto.tabella->nome.toString(), *posto.tabella,
               senzaProprietario(posto.tabella->nome, *posto.colonna));
    for (const Tabella &tabella : catalogo::tutte()) {
        if (!tabella.senzaCoppie.isEmpty())
            annota(tabella.senzaCoppie.toString(), tabella, senzaCoppie(tabella));
    }
}

} // namespace modTarvola
