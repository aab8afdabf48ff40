#include "db/connessioni.h"
#include "db/custodia.h"
#include "faults/campione.h"
#include "faults/inganni.h"
#include "faults/lavori.h"
#include "faults/prove.h"

#include <QDir>
#include <QFile>
#include <QTextStream>

#include <sys/stat.h>
#include <unistd.h>

namespace prove
{

namespace
{

using Righe = QHash<QString, campione::Righe>;

constexpr int secondiAlMassimo = 60;

enum Danno {
    Tronco,
    Bit,
    MoltiBit,
    Pagina,
    Settore,
    Altrui,
    Vuoto,
    Cartella,
    Coda,
    SenzaPermesso,
    SolaLettura,
    quantiDanni
};

void scrive(const QString &percorso, const QByteArray &byte)
{
    QFile file(percorso);
    if (!file.open(QIODevice::WriteOnly) || file.write(byte) != byte.size())
        qFatal("la prova non può preparare i suoi file");
}

QByteArray aCaso(QRandomGenerator &caso, int quanti)
{
    QByteArray byte(quanti, Qt::Uninitialized);
    for (char &uno : byte)
        uno = static_cast<char>(caso.bounded(256));
    return byte;
}

QByteArray altrui(QRandomGenerator &caso, const QByteArray &sano)
{
    switch (caso.bounded(4)) {
    case 0:
        return aCaso(caso, caso.bounded(1, 100'000));
    case 1:
        return QByteArray("\0\1\0\0Standard Jet DB\0", 20) + aCaso(caso, 20'000);
    case 2:
        return QByteArray("<html>").repeated(caso.bounded(1, 4000));
    default:
        return sano.left(caso.bounded(1, 200)) + aCaso(caso, 30'000);
    }
}

// I byte di un file sano dopo un danno che non ne cambia la natura.
QByteArray guastati(Danno danno, QByteArray byte, QRandomGenerator &caso)
{
    const auto lungo = static_cast<int>(byte.size());
    const auto gira = [&](int volte) {
        for (int i = 0; i < volte; ++i) {
            const int dove = caso.bounded(caso.bounded(2) == 0 ? qMin(lungo, 250'000) : lungo);
            byte[dove] = static_cast<char>(byte.at(dove) ^ (1 << caso.bounded(8)));
        }
    };
    const auto copre = [&](int misura) {
        const int dove = caso.bounded(lungo / misura) * misura;
        byte.replace(dove, misura,
                     caso.bounded(2) == 0 ? QByteArray(misura, '\0') : aCaso(caso, misura));
    };
    switch (danno) {
    case Tronco:
        byte.truncate(caso.bounded(lungo));
        break;
    case Bit:
        gira(1);
        break;
    case MoltiBit:
        gira(caso.bounded(2, 200));
        break;
    case Pagina:
        for (int i = caso.bounded(1, 4); i > 0; --i)
            copre(4096);
        break;
    case Settore:
        copre(512);
        break;
    case Altrui:
        return altrui(caso, byte);
    case Vuoto:
        return {};
    default:
        break;
    }
    return byte;
}

void guasta(Danno danno, const QString &percorso, const QByteArray &sano, QRandomGenerator &caso)
{
    const QByteArray nome = percorso.toUtf8();
    switch (danno) {
    case Cartella:
        QFile::remove(percorso);
        QDir().mkpath(percorso);
        break;
    case Coda:
        QFile::remove(percorso);
        ::mkfifo(nome.constData(), 0644);
        break;
    default:
        scrive(percorso, guastati(danno, sano, caso));
        if (danno == SenzaPermesso)
            ::chmod(nome.constData(), 0);
    }
}

bool riesce(const std::function<void()> &lavoro)
{
    try {
        lavoro();
        return true;
    } catch (const ado::Errore &errore) {
        return errore.testo().isEmpty();
    }
}

Righe righeDi(const QString &percorso)
{
    ado::Connection connessione;
    connessione.Open(modTarvola::stringaDiConnessione(percorso));
    return campione::istantanea(connessione);
}

int confronta(const Righe &attese, const Righe &trovate, const QString &che)
{
    qint64 mancano = 0;
    for (auto tabella = attese.cbegin(); tabella != attese.cend(); ++tabella)
        mancano += campione::mancano(*tabella, trovate.value(tabella.key()));
    if (mancano > 0)
        perduto(QStringLiteral("%1: %2 righe che si leggevano").arg(che).arg(mancano));
    return mancano > 0 ? 1 : 0;
}

// Apre, copia, recupera, compatta; in quest'ordine, perché l'ultimo ripara.
int provaTutto(const lavori::Posto &posto, Danno danno, const Righe &sane)
{
    const bool leggibile = danno != Cartella && danno != Coda && danno != SenzaPermesso;
    const Righe ancora = leggibile ? campione::leggibili(posto.archivio(), sane) : Righe();
    int perdite = 0;
    if (danno == SenzaPermesso && ::geteuid() == 0 && ::seteuid(65534) != 0)
        return 1;
    if (danno == SolaLettura)
        inganni::arma({posto.cartella, -1, 0, false, false, true});
    riesce([&] { lavori::apre(posto); });
    if (riesce([&] { lavori::copia(posto); }))
        perdite += confronta(ancora, righeDi(posto.copia()), QStringLiteral("copia"));
    riesce([&] { lavori::recupera(posto); });
    const bool compattato = riesce([&] { lavori::compatta(posto); });
    lavori::chiude();
    inganni::disarma();
    if (danno == SenzaPermesso && ::getuid() == 0 && ::seteuid(0) != 0)
        return 1;
    if (compattato) {
        perdite += verificaIntegri(posto.cartella + QStringLiteral("/copie"));
        perdite += confronta(ancora, righeDi(posto.archivio()), QStringLiteral("riparato"));
    } else if (leggibile) {
        // Un rifiuto è giusto solo se lo dice per una ragione che non è il danno ai dati.
        perdite += QFile::exists(posto.archivio()) ? 0 : 1;
    }
    return perdite * 2 + (compattato ? 1 : 0);
}

} // namespace

int danneggiati(Giro &giro)
{
    const lavori::Posto posto{giro.cartella + QStringLiteral("/danneggiati")};
    lavori::prepara(posto, 60);
    const Righe sane = righeDi(posto.archivio());
    QFile file(posto.archivio());
    if (!file.open(QIODevice::ReadOnly))
        return 1;
    const QByteArray byte = file.readAll();
    file.close();
    int perdite = 0;
    int riparati = 0;
    for (int i = 0; i < giro.giri; ++i) {
        const auto danno = static_cast<Danno>(i < quantiDanni ? i : giro.caso.bounded(Vuoto));
        QDir(posto.cartella).removeRecursively();
        for (const char *nome : {"/copie", "/recuperi"})
            QDir().mkpath(posto.cartella + QString::fromUtf8(nome));
        guasta(danno, posto.archivio(), byte, giro.caso);
        const int esito = aParte(secondiAlMassimo, [&] { return provaTutto(posto, danno, sane); });
        if (esito < 0 || esito > 1) {
            perduto(QStringLiteral("file danneggiato %1, di genere %2: %3")
                        .arg(i)
                        .arg(danno)
                        .arg(esito < 0 ? QStringLiteral("il programma è caduto o non finisce")
                                       : QStringLiteral("perduto")));
            ++perdite;
            QFile::copy(posto.archivio(), giro.cartella + QStringLiteral("/perduto-%1.tvd").arg(i));
        }
        riparati += esito == 1 ? 1 : 0;
    }
    QTextStream(stdout) << "damaged files: " << giro.giri << ", " << riparati
                        << " compacted or repaired, the others refused with a message: lost "
                        << perdite << '\n';
    return perdite;
}

} // namespace prove
