#include "contesto/bozze.h"

#include <QCoreApplication>
#include <QMap>
#include <QPointer>
#include <QThreadPool>
#include <QTimer>

#include <algorithm>
#include <atomic>
#include <memory>

namespace bozze
{

namespace
{

// Tiene le sorgenti, e i cassetti degli archivi in cui si è scritto. Sta tutto nel filo delle
// finestre, salvo la scrittura.
class Custode : public QObject
{
public:
    explicit Custode(QObject *sopra) : QObject(sopra)
    {
        // Un filo solo: le scritture di uno stesso cassetto restano in ordine.
        m_fila.setMaxThreadCount(1);
        m_orologio.setSingleShot(true);
        connect(&m_orologio, &QTimer::timeout, this, [this] { raccoglie(); });
    }

    void aggiunge(Sorgente *una) { m_sorgenti.push_back(una); }
    void toglie(const Sorgente *una)
    {
        m_sorgenti.erase(std::remove(m_sorgenti.begin(), m_sorgenti.end(), una), m_sorgenti.end());
        raccoglie(una->archivio());
    }

    void cambiata()
    {
        if (cartella().isEmpty())
            return;
        // Non si rimanda a ogni tasto: chi scrive senza fermarsi non avrebbe mai una bozza.
        if (!m_orologio.isActive())
            m_orologio.start(dopoIlTasto);
    }

    Cassetto &cassetto(const QString &archivio)
    {
        // I cassetti di un'altra cartella sono altri.
        if (std::exchange(m_cartella, cartella()) != cartella())
            m_cassetti.clear();
        auto suo = m_cassetti.find(archivio);
        if (suo == m_cassetti.end()) {
            const Cassetto nelFile = legge(archivio);
            suo = m_cassetti.insert(archivio, {nelFile, nelFile, std::make_shared<Numero>(0)});
            // Ciò che un programma finito male aveva aperto non lo è più.
            suo->ora.ultime = suo->ora.aperte + suo->ora.ultime;
            suo->ora.aperte.clear();
        }
        return suo->ora;
    }

    void raccoglie()
    {
        m_orologio.stop();
        QStringList archivi = m_cassetti.keys();
        for (const Sorgente *una : m_sorgenti) {
            if (!archivi.contains(una->archivio()))
                archivi.append(una->archivio());
        }
        for (const QString &uno : std::as_const(archivi))
            raccoglie(uno);
    }

    void raccoglie(const QString &archivio)
    {
        if (cartella().isEmpty())
            return;
        QList<Bozza> aperte = diAperte(archivio);
        if (aperte.isEmpty() && !m_cassetti.contains(archivio))
            return;
        Cassetto &suo = cassetto(archivio);
        // L'ora di una bozza è quella in cui è cambiata, non quella in cui la si guarda.
        for (Bozza &una : aperte) {
            const auto prima =
                std::find_if(suo.aperte.begin(), suo.aperte.end(),
                             [&una](const Bozza &altra) { return altra.finestre == una.finestre; });
            if (prima != suo.aperte.end())
                una.quando = prima->quando;
        }
        suo.aperte = aperte;
        scrive(archivio);
    }

    void scrive(const QString &archivio)
    {
        Tenuto &suo = m_cassetti[archivio];
        suo.ora.sfoltisce(QDateTime::currentDateTime());
        if (suo.ora == suo.scritto || cartella().isEmpty())
            return;
        suo.scritto = suo.ora;
        const int mio = ++*suo.numero;
        m_fila.start([dove = cartella(), volta = suo.ora, mio, ultimo = suo.numero] {
            // Una più nuova aspetta già dietro questa.
            if (*ultimo == mio)
                bozze::scrive(dove, volta);
        });
    }

    void aspetta() { m_fila.waitForDone(); }

    // La finestra che si chiude, con quelle da cui è stata aperta.
    Bozza finoA(const Sorgente *ultima) const
    {
        Bozza bozza{QDateTime::currentDateTime(), {}};
        for (const Sorgente *una : m_sorgenti) {
            if (una == ultima ||
                (ultima->posto() == Sorgente::Posto::InPila && una->posto() == ultima->posto() &&
                 una->archivio() == ultima->archivio()))
                bozza.finestre.append(una->stato());
            if (una == ultima)
                break;
        }
        // Di chi resta aperto si riprende il posto, non ciò che vi è scritto.
        for (qsizetype i = 0; i + 1 < bozza.finestre.size(); ++i)
            bozza.finestre[i].caselle.clear();
        return bozza;
    }

private:
    using Numero = std::atomic<int>;
    struct Tenuto {
        Cassetto ora;
        Cassetto scritto; // l'ultimo che si è chiesto di scrivere
        std::shared_ptr<Numero> numero;
    };

    QList<Bozza> diAperte(const QString &archivio) const
    {
        const QDateTime ora = QDateTime::currentDateTime();
        QList<Bozza> aperte;
        Bozza pila{ora, {}};
        for (const Sorgente *una : m_sorgenti) {
            if (una->archivio() != archivio)
                continue;
            if (una->posto() == Sorgente::Posto::InPila)
                pila.finestre.append(una->stato());
            else
                aperte.append({ora, {una->stato()}});
        }
        aperte.append(pila);
        aperte.removeIf([](const Bozza &una) { return !una.scritta(); });
        return aperte;
    }

    std::vector<Sorgente *> m_sorgenti; // nell'ordine in cui le finestre si sono aperte
    QString m_cartella;
    QMap<QString, Tenuto> m_cassetti;
    QTimer m_orologio;
    QThreadPool m_fila; // chi la distrugge aspetta l'ultima scrittura
};

// Vive quanto il programma: prima che finisca, ciò che aspetta è scritto.
Custode &custode()
{
    static QPointer<Custode> solo;
    if (solo.isNull())
        solo = new Custode(QCoreApplication::instance());
    return *solo;
}

struct Ripresa {
    QList<Finestra> attese;
    std::function<void()> riuscita;
};

Ripresa &ripresa()
{
    static Ripresa sola;
    return sola;
}

} // namespace

Sorgente::Sorgente(QObject *finestra, QString archivio, Posto posto,
                   std::function<Finestra()> stato)
    : QObject(finestra), m_archivio(std::move(archivio)), m_posto(posto), m_stato(std::move(stato))
{
    custode().aggiunge(this);
}

Sorgente::~Sorgente()
{
    custode().toglie(this);
}

void Sorgente::cambiata()
{
    custode().cambiata();
}

void Sorgente::registrata()
{
    custode().raccoglie(m_archivio);
}

void Sorgente::abbandonata()
{
    const Bozza bozza = custode().finoA(this);
    if (bozza.scritta())
        custode().cassetto(m_archivio).ultime.prepend(bozza);
}

qsizetype ritrova(const QString &archivio)
{
    const qsizetype quante = legge(archivio).aperte.size();
    custode().cassetto(archivio);
    custode().scrive(archivio);
    return quante;
}

QList<Bozza> ultime(const QString &archivio)
{
    return custode().cassetto(archivio).ultime;
}

void toglie(const QString &archivio, const Bozza &bozza)
{
    custode().cassetto(archivio).ultime.removeOne(bozza);
    custode().scrive(archivio);
}

void scriveSubito()
{
    custode().raccoglie();
    custode().aspetta();
}

void riprende(const QList<Finestra> &finestre, std::function<void()> riuscita)
{
    ripresa() = {finestre, std::move(riuscita)};
}

std::optional<Finestra> prende(const QString &nome, const QString &record)
{
    QList<Finestra> &attese = ripresa().attese;
    if (attese.isEmpty())
        return {};
    if (attese.constFirst().nome != nome || attese.constFirst().record != record) {
        smette();
        return {};
    }
    const Finestra sua = attese.takeFirst();
    if (attese.isEmpty())
        std::exchange(ripresa(), {}).riuscita();
    return sua;
}

QString recordAtteso()
{
    return ripresa().attese.isEmpty() ? QString() : ripresa().attese.constFirst().record;
}

void smette()
{
    ripresa() = {};
}

} // namespace bozze
