#include "db/schema/fiducia.h"

#include <QSet>

#include <algorithm>
#include <optional>

namespace modTarvola
{

namespace
{

bool diParola(QChar carattere)
{
    return carattere.isLetterOrNumber() || carattere == u'_' || carattere == u'$' ||
           carattere.unicode() >= 0x80;
}

QChar chiusuraDi(QChar apertura)
{
    if (apertura == u'[')
        return u']';
    return apertura == u'"' || apertura == u'`' || apertura == u'\'' ? apertura : QChar();
}

// Dove finisce il commento o lo spazio che comincia lì; lo stesso posto se non ne comincia.
qsizetype dopoIlVuoto(QStringView testo, qsizetype posto)
{
    const QStringView resto = testo.mid(posto);
    qsizetype fine = -1;
    if (resto.startsWith(u"--"))
        fine = resto.indexOf(u'\n');
    else if (resto.startsWith(u"/*"))
        fine = resto.indexOf(u"*/", 2) < 0 ? -1 : resto.indexOf(u"*/", 2) + 1;
    else
        return posto + (resto.front().isSpace() ? 1 : 0);
    return fine < 0 ? testo.size() : posto + fine + 1;
}

// Le parole di un'istruzione: nomi e parole chiave maiuscoli e senza virgolette, le stringhe
// intere, ogni altro segno per sé. Due istruzioni con le stesse parole dicono la stessa cosa.
QStringList paroleDi(QStringView testo)
{
    QStringList parole;
    qsizetype posto = 0;
    while (posto < testo.size()) {
        const qsizetype dopo = dopoIlVuoto(testo, posto);
        if (dopo != posto) {
            posto = dopo;
            continue;
        }
        const QChar chiusura = chiusuraDi(testo[posto]);
        qsizetype fine = posto + 1;
        if (!chiusura.isNull()) {
            while (fine < testo.size() && testo[fine] != chiusura)
                ++fine;
            ++fine;
        } else if (diParola(testo[posto])) {
            while (fine < testo.size() && diParola(testo[fine]))
                ++fine;
        }
        const QStringView parola = testo.mid(posto, fine - posto);
        const bool nome = !chiusura.isNull() && chiusura != u'\'' && parola.size() > 2;
        parole.append(
            chiusura == u'\''
                ? parola.toString()
                : (nome ? parola.mid(1, parola.size() - 2) : parola).toString().toUpper());
        posto = fine;
    }
    return parole;
}

QSet<QStringList> comeParole(const QStringList &istruzioni)
{
    QSet<QStringList> tutte;
    for (const QString &istruzione : istruzioni)
        tutte.insert(paroleDi(istruzione));
    // Quello che il motore aggiunge da sé a chi gli chiede le statistiche.
    for (const auto &sua : {u"CREATE TABLE sqlite_stat1(tbl,idx,stat)",
                            u"CREATE TABLE sqlite_stat4(tbl,idx,neq,nlt,ndlt,sample)",
                            u"CREATE TABLE sqlite_sequence(name,seq)"})
        tutte.insert(paroleDi(QStringView(sua)));
    return tutte;
}

// "CREATE INDEX nome ON tabella (colonna, …)": un indice che non calcola, non sceglie e non vieta.
// Su un contenuto lungo impedirebbe di scriverlo a pezzi.
bool indiceInnocuo(const QStringList &parole)
{
    constexpr qsizetype prima = 6;
    if (parole.size() <= prima || parole.at(0) != QStringLiteral("CREATE") ||
        parole.at(1) != QStringLiteral("INDEX") || parole.at(3) != QStringLiteral("ON") ||
        parole.at(5) != QStringLiteral("(") || parole.constLast() != QStringLiteral(")"))
        return false;
    static const QStringList ordini{QStringLiteral("BINARY"), QStringLiteral("NOCASE"),
                                    QStringLiteral("RTRIM")};
    for (qsizetype i = prima; i < parole.size() - 1; ++i) {
        const QString &parola = parole.at(i);
        const bool nome = diParola(parola.front()) || parola.size() > 1;
        if ((!nome && parola != QStringLiteral(",")) || parola.startsWith(u'\'') ||
            parola == QStringLiteral("CAMPOLUNGO") ||
            (parola == QStringLiteral("COLLATE") && !ordini.contains(parole.value(i + 1))))
            return false;
    }
    return true;
}

QString detto(const QStringList &parole, const QString &nome)
{
    const auto dice = [&parole](const char *parola) {
        return parole.mid(0, 3).contains(QLatin1String(parola));
    };
    const QString suo = nome.simplified().left(60);
    if (dice("VIEW"))
        return QStringLiteral("la vista «%1»").arg(suo);
    if (dice("TRIGGER"))
        return QStringLiteral("il trigger «%1»").arg(suo);
    if (dice("INDEX"))
        return QStringLiteral("l'indice «%1»").arg(suo);
    if (dice("VIRTUAL"))
        return QStringLiteral("la tabella virtuale «%1»").arg(suo);
    if (parole.contains(QStringLiteral("AS")) || parole.contains(QStringLiteral("GENERATED")))
        return QStringLiteral("la tabella «%1», con colonne calcolate,").arg(suo);
    return QStringLiteral("la tabella «%1», così com'è fatta,").arg(suo);
}

} // namespace

void verificaSchemaEstraneo(ado::Connection &connessione, const QStringList &note)
{
    // Di solito lo schema sta nel file lettera per lettera come lo si è scritto; ridurlo a parole
    // costerebbe a ogni apertura un ventesimo dell'avvio, e si fa solo per chi lo ha scritto
    // altrimenti.
    const QSet<QString> allaLettera(note.cbegin(), note.cend());
    std::optional<QSet<QStringList>> aParole;
    const ado::Freno freno(connessione);
    connessione.leggi(
        {QStringLiteral("SELECT name, sql FROM sqlite_schema WHERE sql IS NOT NULL"), {}, {}},
        [&](const ado::Riga &riga) {
            // Conta l'istruzione soltanto: il motore esegue quella, qualunque cosa dica il resto.
            const QString istruzione = riga.testo(1);
            if (allaLettera.contains(istruzione))
                return true;
            if (!aParole)
                aParole = comeParole(note);
            const QStringList parole = paroleDi(istruzione);
            if (!aParole->contains(parole) && !indiceInnocuo(parole))
                throw ado::estraneo(detto(parole, riga.testo(0)));
            return true;
        });
}

} // namespace modTarvola
