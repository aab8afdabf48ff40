#include "db/archivio/connessioni.h"
#include "faults/inganni.h"
#include "faults/lavori.h"
#include "faults/prove.h"
#include "platform/disco/provvisorio.h"

#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QSet>
#include <QTextStream>

#include <cerrno>
#include <csignal>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace prove
{

namespace
{

// Ciò che dev'esserci dopo il riavvio. Una scrittura annunciata e non confermata può esserci o no.
struct Attesi {
    QHash<QString, QString> persone;  // nome, codice
    QHash<QString, QString> allegati; // nome, codice
    QSet<QString> eliminate;
    QSet<QString> incerte;
};

void dice(int tubo, const QString &riga)
{
    const QByteArray byte = riga.toUtf8() + '\n';
    if (::write(tubo, byte.constData(), static_cast<size_t>(byte.size())) < 0)
        ::_exit(3);
}

// Il programma che sarà ucciso: ogni lavoro è annunciato, e confermato quando è finito.
[[noreturn]] void lavora(const lavori::Posto &posto, int tubo, quint32 seme, int giro)
{
    QRandomGenerator caso(seme);
    for (int i = 0;; ++i) {
        const QString nome = QStringLiteral("%1-%2").arg(giro).arg(i);
        const int quale = caso.bounded(12);
        try {
            if (quale < 4) {
                dice(tubo, u"P "_s + nome + u' ' + lavori::salva(posto, nome));
            } else if (quale < 6) {
                dice(tubo, u"A "_s + nome + u' ' + lavori::allega(posto, nome));
            } else if (quale < 8) {
                const QString voce = u'V' + QString::number(2 + caso.bounded(200));
                dice(tubo, u"e "_s + voce);
                lavori::elimina(posto, voce);
                dice(tubo, u"E "_s + voce);
            } else if (quale < 10) {
                lavori::compatta(posto);
                dice(tubo, QStringLiteral("C"));
            } else if (quale == 10) {
                lavori::copia(posto);
                dice(tubo, QStringLiteral("B"));
            } else {
                lavori::recupera(posto);
                dice(tubo, QStringLiteral("R"));
            }
        } catch (const ado::Errore &errore) {
            dice(tubo, u"! "_s + errore.testo());
            ::_exit(4);
        }
    }
}

int ascolta(int tubo, Attesi &attesi, QHash<QString, int> &conti)
{
    QByteArray tutto;
    char pezzo[4096];
    for (ssize_t letti = 0; (letti = ::read(tubo, pezzo, sizeof pezzo)) > 0;)
        tutto.append(pezzo, letti);
    attesi.incerte.clear();
    int guasti = 0;
    for (const QByteArray &riga : tutto.split('\n')) {
        const auto parole = QString::fromUtf8(riga).split(u' ');
        const QString &che = parole.constFirst();
        ++conti[che];
        if (che == u"P"_s)
            attesi.persone.insert(parole.value(1), parole.value(2));
        else if (che == u"A"_s)
            attesi.allegati.insert(parole.value(1), parole.value(2));
        else if (che == u"e"_s)
            attesi.incerte.insert(parole.value(1));
        else if (che == u"E"_s)
            attesi.eliminate.insert(parole.value(1));
        if (che == u"!"_s) {
            perduto(QString::fromUtf8(riga));
            ++guasti;
        }
    }
    return guasti;
}

QVariant valore(const char *istruzione, const QVariantList &valori)
{
    return modTarvola::connessione().valore({QString::fromUtf8(istruzione), valori, {}});
}

int mancanti(const Attesi &attesi)
{
    int mancano = 0;
    const auto manca = [&mancano](bool vero, const QString &che) {
        if (vero) {
            perduto(che);
            ++mancano;
        }
    };
    for (auto una = attesi.persone.cbegin(); una != attesi.persone.cend(); ++una) {
        manca(valore("SELECT Nome FROM Individui WHERE Codice = ?", {una.value()}) != una.key(),
              u"persona "_s + una.value());
        manca(!valore("SELECT 1 FROM OperatoriContesti WHERE CodiceContesto = ?", {una.value()})
                   .isValid(),
              u"legame di "_s + una.value());
    }
    for (auto uno = attesi.allegati.cbegin(); uno != attesi.allegati.cend(); ++uno)
        manca(
            valore("SELECT Campolungo FROM Binari WHERE Codice = ?", {uno.value()}).toByteArray() !=
                lavori::contenuto(uno.key()),
            u"allegato "_s + uno.value());
    for (const QString &voce : attesi.eliminate + attesi.incerte) {
        const bool resta = valore("SELECT 1 FROM Voci WHERE Codice = ?", {voce}).isValid();
        const bool sue = valore("SELECT 1 FROM Individui WHERE Voce = ?", {voce}).isValid();
        manca(resta && attesi.eliminate.contains(voce), u"eliminazione di "_s + voce);
        manca(resta != sue, u"eliminazione a metà di "_s + voce);
    }
    // Nessuna persona senza il suo legame: sono scritti insieme.
    manca(valore("SELECT count(*) FROM Individui WHERE Nome LIKE '%-%' AND Codice NOT IN "
                 "(SELECT CodiceContesto FROM OperatoriContesti)",
                 {}) != 0,
          QStringLiteral("scrittura a metà"));
    return mancano;
}

// A turno un disco che sa scambiare due file, uno che conosce solo i collegamenti, uno che non
// conosce neanche quelli. Dopo un cambio di nome si aspetta, perché la morte possa arrivare lì.
inganni::Piano discoDi(int numero, const lavori::Posto &posto)
{
    inganni::Piano piano;
    piano.cartella = posto.cartella;
    piano.senzaModi = numero % 3 == 0 ? 0 : EINVAL;
    piano.senzaLegami = numero % 3 == 2;
    piano.attesa = 3000;
    return piano;
}

// Uccide un processo che lavora, dopo un tempo a caso; rende ciò che manca poi.
int uccide(Giro &giro, int numero, const lavori::Posto &posto, Attesi &attesi,
           QHash<QString, int> &conti)
{
    int tubo[2];
    if (::pipe(tubo) != 0)
        qFatal("manca un tubo");
    const quint32 seme = giro.caso.generate();
    const pid_t figlio = ::fork();
    if (figlio == 0) {
        ::close(tubo[0]);
        inganni::arma(discoDi(numero, posto));
        lavora(posto, tubo[1], seme, numero);
    }
    ::close(tubo[1]);
    ::usleep(static_cast<useconds_t>(giro.caso.bounded(400'000)));
    ::kill(figlio, SIGKILL);
    int perdite = finisceCosi(figlio, 0, SIGKILL);
    perdite += ascolta(tubo[0], attesi, conti);
    ::close(tubo[0]);
    // Solo dove mancano anche i collegamenti un archivio può trovarsi senza nome, e lo riprende.
    if (discoDi(numero, posto).senzaLegami) {
        ++conti[QFileInfo::exists(posto.archivio()) ? u"con nome"_s : u"senza nome"_s];
        provvisorio::ritrovaIn(posto.cartella);
    }
    perdite += verificaIntegri(posto.cartella);
    try {
        lavori::apre(posto);
        perdite += mancanti(attesi);
    } catch (const ado::Errore &errore) {
        perduto(errore.testo());
        ++perdite;
    }
    lavori::chiude();
    return perdite;
}

} // namespace

int uccisioni(Giro &giro)
{
    const lavori::Posto posto{giro.cartella + QStringLiteral("/uccisioni")};
    Attesi attesi;
    QHash<QString, int> conti;
    int perdite = 0;
    for (int i = 0; i < giro.giri; ++i) {
        if (i % 50 == 0) {
            lavori::prepara(posto, 200);
            attesi = {};
        }
        perdite += uccide(giro, i, posto, attesi, conti);
        QDir(posto.cestino()).removeRecursively();
    }
    constexpr int giriPerTutto = 100;
    for (const QString &lavoro : {u"P"_s, u"A"_s, u"E"_s, u"C"_s, u"B"_s, u"R"_s}) {
        if (giro.giri >= giriPerTutto && conti[lavoro] == 0) {
            perduto(u"nessun lavoro compiuto del genere "_s + lavoro);
            ++perdite;
        }
    }
    QTextStream(stdout) << "killed " << giro.giri << " times, after " << conti[u"P"_s] << " saves, "
                        << conti[u"A"_s] << " attachments, " << conti[u"E"_s] << " deletions, "
                        << conti[u"C"_s] << " compactions, " << conti[u"B"_s] << " back-ups, "
                        << conti[u"R"_s] << " restores; " << conti[u"senza nome"_s]
                        << " archives found again by name: lost " << perdite << '\n';
    return perdite;
}

} // namespace prove
