#include "db/archivio/connessioni.h"
#include "faults/lavori.h"
#include "faults/prove.h"

#include <QHash>
#include <QTextStream>

#include <cstring>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace prove
{

namespace
{

constexpr int salvataggi = 25;
constexpr int scrittori = 3;

// Salva finché non ha salvato tutto; occupato o spostato, riprova come farebbe chi lo usa.
[[noreturn]] void scrive(const lavori::Posto &posto, int tubo, int chi)
{
    for (int i = 0; i < salvataggi; ++i) {
        const QString nome = QStringLiteral("%1-%2").arg(chi).arg(i);
        for (bool fatto = false; !fatto;) {
            QString riga;
            try {
                riga = u"P "_s + nome + u' ' + lavori::salva(posto, nome);
                fatto = true;
            } catch (const ado::Errore &errore) {
                riga = errore.causa() == ado::Causa::Occupato   ? QStringLiteral("O")
                       : errore.causa() == ado::Causa::Spostato ? QStringLiteral("S")
                                                                : u"! "_s + errore.testo();
                lavori::chiude();
                fatto = riga.startsWith(u'!');
            }
            const QByteArray byte = riga.toUtf8() + '\n';
            if (::write(tubo, byte.constData(), static_cast<size_t>(byte.size())) < 0)
                ::_exit(1);
        }
        ::usleep(2000);
        // Chi chiude lascia il posto a chi compatta.
        if (i % 3 == 0)
            lavori::chiude();
    }
    ::_exit(0);
}

[[noreturn]] void custodisce(const lavori::Posto &posto, int tubo)
{
    for (int i = 0; i < 10; ++i) {
        const char *esito = "C\n";
        try {
            i % 2 == 0 ? lavori::compatta(posto) : lavori::copia(posto);
        } catch (const ado::Errore &errore) {
            esito = errore.causa() == ado::Causa::Occupato ? "O\n" : "! custodia\n";
        }
        if (::write(tubo, esito, std::strlen(esito)) < 0)
            ::_exit(1);
        ::usleep(30'000);
    }
    ::_exit(0);
}

struct Conti {
    int occupati = 0;
    int custodie = 0;
};

int verifica(const lavori::Posto &posto, const QByteArray &detto, Conti &conti)
{
    int perdite = 0;
    QHash<QString, QString> codici;
    lavori::apre(posto);
    for (const QByteArray &riga : detto.split('\n')) {
        const auto parole = QString::fromUtf8(riga).split(u' ');
        conti.occupati += parole.constFirst() == u"O"_s || parole.constFirst() == u"S"_s ? 1 : 0;
        conti.custodie += parole.constFirst() == u"C"_s ? 1 : 0;
        if (parole.constFirst() == u"!"_s) {
            perduto(QString::fromUtf8(riga));
            ++perdite;
        }
        if (parole.constFirst() != u"P"_s)
            continue;
        const QString &codice = parole.at(2);
        if (codici.contains(codice)) {
            perduto(u"codice dato due volte: "_s + codice);
            ++perdite;
        }
        codici.insert(codice, parole.at(1));
        const QVariant nome = modTarvola::connessione().valore(
            {QStringLiteral("SELECT Nome FROM Individui WHERE Codice = ?"), {codice}, {}});
        if (nome != parole.at(1)) {
            perduto(u"salvataggio perduto: "_s + codice);
            ++perdite;
        }
    }
    lavori::chiude();
    if (perdite == 0 && codici.size() != salvataggi * scrittori) {
        perduto(QStringLiteral("salvataggi non arrivati in fondo"));
        ++perdite;
    }
    return perdite;
}

} // namespace

int dueProgrammi(Giro &giro)
{
    const lavori::Posto posto{giro.cartella + QStringLiteral("/due")};
    int perdite = 0;
    Conti conti;
    const int volte = giro.giri / 20 + 1;
    for (int i = 0; i < volte; ++i) {
        lavori::prepara(posto, 10);
        int tubo[2];
        if (::pipe(tubo) != 0)
            return 1;
        QList<pid_t> figli;
        for (int chi = 0; chi <= scrittori; ++chi) {
            if (const pid_t figlio = ::fork(); figlio != 0) {
                figli.append(figlio);
                continue;
            }
            if (chi == scrittori)
                custodisce(posto, tubo[1]);
            scrive(posto, tubo[1], chi);
        }
        ::close(tubo[1]);
        QByteArray detto;
        char pezzo[4096];
        for (ssize_t letti = 0; (letti = ::read(tubo[0], pezzo, sizeof pezzo)) > 0;)
            detto.append(pezzo, letti);
        ::close(tubo[0]);
        for (const pid_t figlio : std::as_const(figli))
            perdite += finisceCosi(figlio, 0, 0);
        perdite += verificaIntegri(posto.cartella) + verifica(posto, detto, conti);
    }
    if (conti.custodie == 0) {
        perduto(QStringLiteral("nessuna compattazione né copia è riuscita fra i salvataggi"));
        ++perdite;
    }
    QTextStream(stdout) << "several programs on one file: " << volte << " rounds, "
                        << volte * salvataggi * scrittori << " saves, " << conti.custodie
                        << " compactions and back-ups among them, told busy " << conti.occupati
                        << " times: lost " << perdite << '\n';
    return perdite;
}

} // namespace prove
