#include "db/lavoro/nomi.h"

#include "db/schema/generi.h"
#include "db/schema/tabelle.h"

#include <QStringList>

namespace modTarvola
{

namespace
{

struct Parole {
    QStringView tabella;
    QStringView eliminato; // col suo articolo
    QStringView uno;
    QStringView molti;
    QStringView nome; // l'espressione che lo dice; dove è Null vale il codice
};

constexpr Parole parole[] = {
    {u"Archivi", u"Eliminato l'archivio", u"archivio", u"archivi", u"Nome"},
    {u"Registri", u"Eliminato il registro", u"registro", u"registri", u"Titolo"},
    {u"Voci", u"Eliminata la voce", u"voce", u"voci", u"CodiceVoce"},
    {u"Individui", u"Eliminato", u"individuo", u"individui",
     u"trim(coalesce(Nome, '') || ' ' || coalesce(Cognome, ''))"},
    {u"Famiglie", u"Eliminata la famiglia", u"famiglia", u"famiglie", u"NULL"},
    {u"Eventi", u"Eliminato l'evento", u"evento", u"eventi", u"NULL"},
    {u"Binari", u"Eliminato il testo", u"testo", u"testi", u"Nome"},
    {u"File", u"Eliminato il file", u"file", u"file", u"Nome"},
    {u"Luoghi", u"Eliminato l'indirizzo", u"indirizzo", u"indirizzi", u"NULL"},
    {u"Comunicazioni", u"Eliminato il recapito", u"recapito", u"recapiti", u"NULL"},
    {u"Operatori", u"Eliminato l'operatore", u"operatore", u"operatori", u"Nome"},
};

const Parole *paroleDi(QStringView tabella)
{
    for (const Parole &sue : parole) {
        if (sue.tabella == tabella)
            return &sue;
    }
    return nullptr;
}

} // namespace

Tolti::Tolti(ado::Connection &connessione, const QString &codice) : m_record(codice)
{
    const catalogo::Tabella *sua = catalogo::diCodice(codice);
    const Parole *sue = sua == nullptr ? nullptr : paroleDi(sua->nome);
    if (sue == nullptr)
        return;
    m_tabella = sua->nome.toString();
    const auto valore = [&](QStringView espressione) {
        return connessione
            .valore(
                {QStringLiteral("SELECT %1 FROM %2 WHERE Codice = ?").arg(espressione, sua->nome),
                 {codice},
                 {}})
            .toString()
            .simplified();
    };
    const QString nome = valore(sue->nome);
    if (!nome.isEmpty())
        m_record = nome;
    if (sua->lunga() != nullptr && valore(u"Tipo").toInt() == FileAllegato)
        m_tabella = QStringLiteral("File");
}

void Tolti::diCuiFile(int quanti)
{
    m_quante[QStringLiteral("File")] = quanti;
    m_quante[QStringLiteral("Binari")] -= quanti;
}

QString Tolti::nome() const
{
    const Parole *sue = paroleDi(m_tabella);
    if (sue == nullptr)
        return QStringLiteral("Eliminazione di ") + m_record;
    QString nome = sue->eliminato.toString();
    nome += u' ' + m_record;
    QStringList insieme;
    for (const Parole &una : parole) {
        const int quante =
            m_quante.value(una.tabella.toString()) - (una.tabella == m_tabella ? 1 : 0);
        if (quante > 0)
            insieme.append(
                QStringLiteral("%1 %2").arg(quante).arg(quante == 1 ? una.uno : una.molti));
    }
    return insieme.isEmpty()
               ? nome
               : QStringLiteral("%1 con %2").arg(nome, insieme.join(QStringLiteral(", ")));
}

} // namespace modTarvola
