#include "db/archivio/connessioni.h"
#include "faults/campione.h"
#include "faults/inganni.h"
#include "faults/lavori.h"
#include "faults/prove.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTextStream>

#include <algorithm>
#include <sys/stat.h>
#include <unistd.h>

namespace prove
{

namespace
{

using Righe = QHash<QString, campione::Righe>;

constexpr int secondiAlMassimo = 10;

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

QByteArray byteDi(const QString &percorso)
{
    QFile file(percorso);
    return QFileInfo(percorso).isFile() && file.open(QIODevice::ReadOnly) ? file.readAll()
                                                                          : QByteArray();
}

struct Esito {
    bool riuscito = true;
    ado::Causa causa = ado::Causa::Altro;
    QString motivo;
};

Esito prova(const std::function<void()> &lavoro)
{
    Esito esito;
    try {
        lavoro();
    } catch (const ado::Errore &errore) {
        esito = {false, errore.causa(), errore.testo()};
    }
    lavori::chiude();
    return esito;
}

// Un file danneggiato, il sano da cui viene e ciò che in questo c'era.
struct Guasto {
    lavori::Posto posto;
    Danno danno;
    QString sano;
    const Righe &sane;
};

Righe righeDi(const QString &percorso)
{
    modTarvola::ApriArchivio(percorso);
    Righe righe = campione::istantanea(modTarvola::connessione());
    lavori::chiude();
    return righe;
}

bool esige(bool vero, const QString &che)
{
    if (!vero)
        perduto(che);
    return vero;
}

bool haTutto(const Righe &attese, const QString &percorso, const QString &che)
{
    const Righe trovate = righeDi(percorso);
    qint64 mancano = 0;
    for (auto tabella = attese.cbegin(); tabella != attese.cend(); ++tabella)
        mancano += campione::mancano(*tabella, trovate.value(tabella.key()));
    return esige(mancano == 0,
                 QStringLiteral("%1: %2 righe che si leggevano").arg(che).arg(mancano));
}

// Ciò che dev'essere salvato: quello che il motore rende ancora e quello che sta in pagine sane.
Righe attese(const Guasto &guasto)
{
    if (guasto.danno == Cartella || guasto.danno == Coda || guasto.danno == SenzaPermesso)
        return {};
    Righe tutte = campione::leggibili(guasto.posto.archivio(), guasto.sane);
    const Righe intatte = campione::intatte(guasto.sano, guasto.posto.archivio(), guasto.sane);
    for (auto tabella = intatte.cbegin(); tabella != intatte.cend(); ++tabella)
        tutte[tabella.key()].insert(*tabella);
    return tutte;
}

bool vuote(const Righe &righe)
{
    return std::all_of(righe.cbegin(), righe.cend(),
                       [](const campione::Righe &una) { return una.isEmpty(); });
}

// Una copia dichiarata riuscita ha tutto; altrimenti non c'è.
bool copiaGiusta(const Esito &esito, const QString &copia, const Righe &ancora)
{
    return esito.riuscito ? haTutto(ancora, copia, copia)
                          : esige(!QFileInfo::exists(copia), copia + QStringLiteral(": c'è"));
}

// Un rifiuto è giusto se non c'è nulla da salvare o per una ragione che non è il danno ai dati, e
// lascia il file com'era; una riparazione salva tutto e tiene il vecchio.
bool compattatoGiusto(const Guasto &guasto, const Esito &esito, const Righe &ancora,
                      const QByteArray &prima)
{
    const QString archivio = guasto.posto.archivio();
    if (esito.riuscito) {
        const QString vecchio = guasto.posto.cestino() + QStringLiteral("/archivio.tvd");
        return haTutto(ancora, archivio, QStringLiteral("riparato")) &&
               esige(byteDi(vecchio) == prima, QStringLiteral("il vecchio non è nel Cestino"));
    }
    const bool giusto = vuote(ancora) || guasto.danno == SolaLettura ||
                        esito.causa == ado::Causa::PasswordErrata ||
                        esito.causa == ado::Causa::VersioneNuova;
    return esige(giusto, QStringLiteral("rifiutato ciò che si leggeva: ") + esito.motivo) &&
           esige(QFileInfo::exists(archivio) && byteDi(archivio) == prima,
                 QStringLiteral("rifiutato, e non è più lo stesso"));
}

// Chi comanda può leggere ogni file: senza permessi ci si prova da nessuno.
void entra(const Guasto &guasto)
{
    inganni::Piano piano;
    piano.cartella = guasto.posto.cartella;
    piano.solaLettura = true;
    if (guasto.danno == SolaLettura)
        inganni::arma(piano);
    if (guasto.danno == SenzaPermesso && ::geteuid() == 0 && ::seteuid(65534) != 0)
        qFatal("la prova non può cambiare utente");
}

void esce()
{
    inganni::disarma();
    if (::getuid() == 0 && ::seteuid(0) != 0)
        qFatal("la prova non può cambiare utente");
}

// Da un CD la copia su un altro disco riesce.
bool copiaDaSolaLettura(const Guasto &guasto)
{
    inganni::Piano piano;
    piano.cartella = guasto.posto.archivio();
    piano.solaLettura = true;
    inganni::arma(piano);
    const Esito copiato = prova([&] { lavori::copia(guasto.posto); });
    const Esito recuperato = prova([&] { lavori::recupera(guasto.posto); });
    inganni::disarma();
    return esige(copiato.riuscito, QStringLiteral("copia da sola lettura: ") + copiato.motivo) &&
           esige(recuperato.riuscito,
                 QStringLiteral("recupero da sola lettura: ") + recuperato.motivo) &&
           haTutto(guasto.sane, guasto.posto.copia(), QStringLiteral("copia da sola lettura")) &&
           haTutto(guasto.sane, guasto.posto.recupero(), QStringLiteral("recupero"));
}

// Apre, copia, recupera, compatta; in quest'ordine, perché l'ultimo ripara.
Finale provaTutto(const Guasto &guasto)
{
    const lavori::Posto &posto = guasto.posto;
    const Righe ancora = attese(guasto);
    const QByteArray prima = byteDi(posto.archivio());
    entra(guasto);
    const Esito aperto = prova([&] { lavori::apre(posto); });
    const Esito copiato = prova([&] { lavori::copia(posto); });
    const Esito recuperato = prova([&] { lavori::recupera(posto); });
    const Esito compattato = prova([&] { lavori::compatta(posto); });
    esce();
    bool bene = true;
    for (const Esito &esito : {aperto, copiato, recuperato, compattato})
        bene = esige(esito.riuscito || !esito.motivo.isEmpty(), QStringLiteral("muto")) && bene;
    if (guasto.danno == SenzaPermesso)
        bene = esige(!aperto.riuscito && compattato.causa == ado::Causa::Illeggibile,
                     QStringLiteral("senza permesso: ") + compattato.motivo) &&
               bene;
    bene = copiaGiusta(copiato, posto.copia(), ancora) && bene;
    bene = copiaGiusta(recuperato, posto.recupero(), ancora) && bene;
    bene = compattatoGiusto(guasto, compattato, ancora, prima) && bene;
    bene = verificaIntegri(posto.cartella + QStringLiteral("/copie")) == 0 && bene;
    if (guasto.danno == SolaLettura)
        bene = copiaDaSolaLettura(guasto) && bene;
    return !bene ? Perduto : compattato.riuscito ? Fatto : Rifiutato;
}

// Una cartella in cui chiunque può scrivere, perché a fermare chi non ha permessi sia il file.
void preparaCartella(const lavori::Posto &posto)
{
    QDir(posto.cartella).removeRecursively();
    for (const char *nome : {"/copie", "/recuperi"})
        QDir().mkpath(posto.cartella + QString::fromUtf8(nome));
    for (const char *nome : {"", "/copie", "/recuperi"})
        ::chmod((posto.cartella + QString::fromUtf8(nome)).toUtf8().constData(), 0777);
}

} // namespace

int danneggiati(Giro &giro)
{
    const lavori::Posto posto{giro.cartella + QStringLiteral("/danneggiati")};
    const QString sano = giro.cartella + QStringLiteral("/sano.tvd");
    lavori::prepara(posto, 60);
    const Righe sane = righeDi(posto.archivio());
    const QByteArray byte = byteDi(posto.archivio());
    scrive(sano, byte);
    ::chmod(giro.cartella.toUtf8().constData(), 0755);
    int perdite = 0;
    int riparati = 0;
    // Ogni danno almeno una volta.
    const int file = qMax<int>(giro.giri, quantiDanni);
    for (int i = 0; i < file; ++i) {
        const auto danno = static_cast<Danno>(i < quantiDanni ? i : giro.caso.bounded(Vuoto));
        preparaCartella(posto);
        guasta(danno, posto.archivio(), byte, giro.caso);
        const QByteArray prima = byteDi(posto.archivio());
        const Finale finale = aParte(secondiAlMassimo, [&] {
            return provaTutto({posto, danno, sano, sane});
        });
        if (finale == Perduto) {
            perduto(QStringLiteral("file danneggiato %1, di genere %2").arg(i).arg(danno));
            ++perdite;
            scrive(giro.cartella + QStringLiteral("/perduto-%1.tvd").arg(i), prima);
        }
        riparati += finale == Fatto ? 1 : 0;
    }
    QTextStream(stdout) << "damaged files: " << file << ", " << riparati
                        << " compacted or repaired, the others refused with a message: lost "
                        << perdite << '\n';
    return perdite;
}

} // namespace prove
