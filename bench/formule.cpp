// Quanto il formulario risparmia a chi trascrive il testo di una serie d'atti: un dattilografo
// perfetto che conosce il testo e a ogni passo prende la via più corta; e quante caselle si
// ritrovano dal testo dato intero. Senza finestre.
//   formule [-v] SERIE.json…

#include "bench/serie.h"
#include "db/formule/formulario.h"

#include <QElapsedTimer>

#include <algorithm>
#include <cstdio>

using namespace modTarvola;

namespace
{

constexpr qsizetype primoContato = 10;

// Dal nome che la casella dice al suo indirizzo.
QHash<QString, scheda::Indirizzo> indirizzi(const scheda::Scheda &scheda)
{
    static const QHash<QString, QString> voci{
        {QStringLiteral("PaginaIniziale"), QStringLiteral("Pagina")},
        {QStringLiteral("CodiceVoce"), QStringLiteral("Codice")}};
    static const QHash<int, QString> eventi{
        {20, QStringLiteral("Nascita")},    {21, QStringLiteral("Battesimo")},
        {18, QStringLiteral("Matrimonio")}, {19, QStringLiteral("Pubblicazioni")},
        {26, QStringLiteral("Morte")},      {27, QStringLiteral("Sepoltura")}};
    QHash<QString, scheda::Indirizzo> trovati;
    constexpr int molte = 10;
    for (const scheda::Riga &riga : scheda.righe) {
        const scheda::Posto *posto = scheda.posto(riga.posto);
        const bool elenco = posto->come == scheda::Come::Elenco;
        for (int quale = 0; quale < (elenco ? molte : 1); ++quale) {
            QString chi = riga.evento == 0 ? posto->etichetta : eventi.value(riga.evento);
            if (elenco)
                chi += QStringLiteral(" %1").arg(quale + 1);
            for (const scheda::Casella &casella : riga.caselle)
                trovati.insert(chi + QStringLiteral(": ") +
                                   voci.value(casella.campo, casella.campo),
                               {riga.posto, quale, riga.evento, casella.campo});
        }
    }
    return trovati;
}

formule::Caselle caselleDi(const serie::Atto &atto,
                           const QHash<QString, scheda::Indirizzo> &indirizzi)
{
    formule::Caselle caselle;
    for (auto una = atto.caselle.cbegin(); una != atto.caselle.cend(); ++una) {
        if (indirizzi.contains(una.key()))
            caselle.insert(indirizzi.value(una.key()), una.value());
        else
            std::printf("nessuna casella per %s\n", qUtf8Printable(una.key()));
    }
    return caselle;
}

struct Conto {
    int tasti = 0;
    int lettere = 0;
    int mostrate = 0;
    int giusti = 0; // tratti
    int interi = 0; // proposte intere
    int giuste = 0; // caselle
    int sbagliate = 0;
    int vuote = 0;
    QList<double> tempi; // millisecondi
};

void scrive(const formule::Formulario &formulario, const formule::Caselle &caselle,
            const QString &tutto, Conto &conto, bool parla)
{
    QString scritto;
    QString vista;
    QString traccia;
    while (scritto.size() < tutto.size()) {
        QElapsedTimer orologio;
        orologio.start();
        const formule::Seguito seguito = formulario.seguito(caselle, scritto);
        conto.tempi.append(static_cast<double>(orologio.nsecsElapsed()) / 1e6);
        const QString resto = tutto.sliced(scritto.size());
        const QString &testo = seguito.testo;
        if (!testo.isEmpty() && testo != vista) {
            ++conto.mostrate;
            const bool giusto = resto.startsWith(testo.first(seguito.tratto));
            conto.giusti += giusto ? 1 : 0;
            conto.interi += resto.startsWith(testo) ? 1 : 0;
            if (parla && !resto.startsWith(testo))
                traccia += QStringLiteral("\n   %1 ...%2| %3 [%4]\n")
                               .arg(giusto ? QStringLiteral("lungo") : QStringLiteral("FALSO"),
                                    scritto.right(25), testo, testo.first(seguito.tratto));
        }
        qsizetype preso = 1;
        for (const qsizetype quanto : {seguito.parola, seguito.tratto, testo.size()}) {
            if (quanto > 1 && resto.startsWith(testo.first(quanto)))
                preso = std::max(preso, quanto);
        }
        traccia += preso > 1 ? u'<' + resto.first(preso) + u'>' : resto.first(1);
        scritto += resto.first(preso);
        vista = testo.startsWith(resto.first(preso)) ? testo.sliced(preso) : QString();
        ++conto.tasti;
    }
    conto.lettere += static_cast<int>(tutto.size());
    if (parla)
        std::printf("%s\n", qUtf8Printable(traccia));
}

void legge(const formule::Formulario &formulario, const formule::Caselle &caselle,
           const QString &testo, Conto &conto, bool parla)
{
    // Volume, pagina e numero la pagina li sa già.
    formule::Caselle note;
    for (auto una = caselle.cbegin(); una != caselle.cend(); ++una) {
        if (una.key().posto == QStringLiteral("voce") && una.key().campo != QStringLiteral("Data"))
            note.insert(una.key(), una.value());
    }
    const auto lette = formulario.caselle(testo, note);
    for (auto una = caselle.cbegin(); una != caselle.cend(); ++una) {
        if (note.contains(una.key()))
            continue;
        const auto letta = lette.constFind(una.key());
        if (letta == lette.constEnd()) {
            ++conto.vuote;
            continue;
        }
        const bool giusta = letta->valore == una.value();
        ++(giusta ? conto.giuste : conto.sbagliate);
    }
    for (auto una = lette.cbegin(); una != lette.cend(); ++una) {
        const bool diTroppo = !caselle.contains(una.key());
        conto.sbagliate += diTroppo ? 1 : 0;
        if (parla && caselle.value(una.key()) != una->valore)
            std::printf("   %s %d %d %s: %s, non %s\n", qUtf8Printable(una.key().posto),
                        una.key().quale, una.key().evento, qUtf8Printable(una.key().campo),
                        qUtf8Printable(una->valore), qUtf8Printable(caselle.value(una.key())));
    }
    for (auto una = caselle.cbegin(); parla && una != caselle.cend(); ++una) {
        if (!lette.contains(una.key()) && !note.contains(una.key()))
            std::printf("   vuota %s %d %d %s: %s\n", qUtf8Printable(una.key().posto),
                        una.key().quale, una.key().evento, qUtf8Printable(una.key().campo),
                        qUtf8Printable(una.value()));
    }
}

int misura(const QString &percorso, bool parla)
{
    QString motivo;
    const auto serie = serie::legge(percorso, motivo);
    if (!serie) {
        std::fprintf(stderr, "%s: %s\n", qUtf8Printable(percorso), qUtf8Printable(motivo));
        return 2;
    }
    const auto nomi = indirizzi(*scheda::diTipo(serie->tipo));
    formule::Formulario formulario;
    Conto conto;
    QElapsedTimer orologio;
    double imparato = 0;
    for (qsizetype i = 0; i < serie->atti.size(); ++i) {
        const auto caselle = caselleDi(serie->atti.at(i), nomi);
        const QString &testo = serie->atti.at(i).testo;
        if (i >= primoContato) {
            scrive(formulario, caselle, testo, conto, parla);
            legge(formulario, caselle, testo, conto, parla);
        }
        orologio.start();
        formulario.impara(caselle, testo);
        imparato += static_cast<double>(orologio.nsecsElapsed()) / 1e6;
    }
    std::sort(conto.tempi.begin(), conto.tempi.end());
    const auto quota = [](int parte, int tutto) {
        return tutto == 0 ? 0.0 : static_cast<double>(parte) / tutto;
    };
    const int caselle = conto.giuste + conto.vuote + conto.sbagliate;
    std::printf(
        "%s: tasti per lettera %.3f; mostrate %d, tratto giusto %.3f, intere %.3f; "
        "caselle giuste %.3f sbagliate %.3f vuote %.3f; tasto %.1f ms (99%%), %.1f (peggio); "
        "imparare %.1f ms\n",
        qUtf8Printable(percorso.section(u'/', -1)), quota(conto.tasti, conto.lettere),
        conto.mostrate, quota(conto.giusti, conto.mostrate), quota(conto.interi, conto.mostrate),
        quota(conto.giuste, caselle), quota(conto.sbagliate, caselle), quota(conto.vuote, caselle),
        conto.tempi.at(conto.tempi.size() * 99 / 100), conto.tempi.last(), imparato);
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    int stato = 0;
    bool parla = false;
    for (int i = 1; i < argc; ++i) {
        const QString parola = QString::fromLocal8Bit(argv[i]);
        if (parola == QStringLiteral("-v"))
            parla = true;
        else
            stato = std::max(stato, misura(parola, parla));
    }
    return stato;
}
