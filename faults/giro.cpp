// Ogni atto di un archivio pieno di stranezze si apre sulla sua pagina e si salva, coi soli tasti:
// nulla deve cambiare. Poi di alcuni si scrive una lettera in una casella: deve cambiare quella
// sola.
//   giro PERSONE [SEME]

#include "app/avvio.h"
#include "atti/fmScheda.h"
#include "atti/pagina.h"
#include "db/archivio/connessioni.h"
#include "db/schema/modello.h"
#include "faults/atti_strani.h"
#include "faults/righe.h"

#include <QAbstractButton>
#include <QApplication>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QMessageBox>
#include <QTemporaryDir>
#include <QTest>
#include <QTextStream>
#include <QTimer>

using namespace modTarvola;
using righe::Diversa;

namespace
{

constexpr int operatore = 1;
constexpr int esempi = 12; // quanti guasti si dicono

QTextStream &uscita()
{
    static QTextStream flusso(stdout);
    return flusso;
}

// Chi va da un atto all'altro con la tastiera.
class Lettore
{
public:
    Lettore(QString percorso, quint32 seme) : m_percorso(std::move(percorso)), m_caso(seme)
    {
        QObject::connect(&m_orologio, &QTimer::timeout, [this] { rifiuta(); });
        m_orologio.start(20);
    }

    // Apre l'ultimo atto del registro e risale fino al primo; di ognuno attraversa le caselle e lo
    // salva. Se `scrive`, in una casella mette prima una lettera.
    void percorre(const QString &registro, bool scrive)
    {
        const int quanti =
            connessione()
                .valore({QStringLiteral("SELECT count(*) FROM Voci WHERE Registro = ?"),
                         {registro},
                         {}})
                .toInt();
        ProprietaScheda sue;
        sue.Percorso = m_percorso;
        sue.RegistroLocale = registro;
        sue.ConOperatore = QStringLiteral("O%1").arg(operatore);
        m_pagina = std::make_unique<fmScheda>(sue, nullptr);
        m_pagina->Form_Load();
        m_pagina->resize(1200, 700);
        m_pagina->show();
        attende();
        m_pagina->comincia();
        QSet<QString> visti;
        preme(Qt::Key_F7);
        while (!m_pagina->proprieta.VoceLocale.isEmpty() &&
               !visti.contains(m_pagina->proprieta.VoceLocale)) {
            visti.insert(m_pagina->proprieta.VoceLocale);
            if (scrive)
                cambia();
            else
                attraversa();
            preme(Qt::Key_S, Qt::ControlModifier);
            preme(Qt::Key_F7);
        }
        m_atti += visti.size();
        if (visti.size() != quanti)
            guasto(QStringLiteral("of %1 acts of %2 the page reaches %3")
                       .arg(quanti)
                       .arg(registro)
                       .arg(visti.size()));
        m_pagina.reset();
    }

    qsizetype atti() const { return m_atti; }
    int guasti() const { return m_guasti; }
    int cambiati() const { return m_cambiati; }
    int passi() const { return m_passi; }

private:
    void guasto(const QString &che)
    {
        if (++m_guasti <= esempi)
            uscita() << "  " << che << Qt::endl;
    }

    void attende() const
    {
        m_pagina->activateWindow();
        if (!QTest::qWaitForWindowActive(m_pagina.get()))
            qFatal("la pagina non diventa attiva");
    }

    static void preme(Qt::Key tasto, Qt::KeyboardModifiers modi = {}, const QString &testo = {})
    {
        QWidget *qui = QApplication::focusWidget();
        if (qui == nullptr)
            qFatal("la tastiera non è in nessun posto");
        QTest::sendKeyEvent(QTest::Click, qui, tasto, testo, modi);
        QApplication::processEvents();
    }

    // Nessuno ha chiesto nulla: la pagina non deve domandare né avvertire.
    void rifiuta()
    {
        auto *scatola = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        if (scatola == nullptr)
            return;
        const auto *messaggio = qobject_cast<QMessageBox *>(scatola);
        guasto(QStringLiteral("%1: the page asks: %2")
                   .arg(m_pagina->proprieta.VoceLocale,
                        messaggio == nullptr ? scatola->objectName() : messaggio->text()));
        // Non si salva ciò che non si è scritto.
        QAbstractButton *no =
            messaggio == nullptr ? nullptr : messaggio->button(QMessageBox::Discard);
        if (no != nullptr)
            no->click();
        else
            scatola->reject();
    }

    // Il tabulatore attraverso le caselle da scrivere e la freccia attraverso tutte: uscendo
    // ciascuna riscrive ciò che mostra.
    void attraversa()
    {
        const Qt::Key tasto = m_atti % 2 == 0 ? Qt::Key_Down : Qt::Key_Tab;
        const QWidget *prima = QApplication::focusWidget();
        for (int i = 0; i < 12 + m_caso.bounded(40); ++i) {
            const QWidget *qui = QApplication::focusWidget();
            preme(qobject_cast<const QLineEdit *>(qui) == nullptr ? Qt::Key_Tab : tasto);
            ++m_passi;
            if (QApplication::focusWidget() == prima)
                break;
        }
    }

    // Una lettera in fondo a una casella che ha già qualcosa, e che non chiede una forma.
    void cambia()
    {
        static const QStringList libere{
            QStringLiteral("Nome"),   QStringLiteral("Cognome"),      QStringLiteral("Luogo"),
            QStringLiteral("Volume"), QStringLiteral("Precisazione"), QStringLiteral("Valore"),
            QStringLiteral("Causa"),  QStringLiteral("Detto"),        QStringLiteral("Soprannome"),
            QStringLiteral("Età"),    QStringLiteral("Indirizzo")};
        std::vector<Campo *> adatti;
        for (Campo *campo : m_pagina->pagina()->campi()) {
            constexpr int lungo = 50;
            if (libere.contains(campo->dove.campo) && !campo->vuoto() &&
                campo->testo().size() < lungo)
                adatti.push_back(campo);
        }
        if (adatti.empty())
            return;
        Campo *scelto =
            adatti.at(static_cast<size_t>(m_caso.bounded(static_cast<int>(adatti.size()))));
        scelto->fuoco()->setFocus();
        preme(Qt::Key_End);
        preme(Qt::Key_X, {}, QStringLiteral("x"));
        preme(Qt::Key_Escape);
        ++m_cambiati;
    }

    QString m_percorso;
    QRandomGenerator m_caso;
    QTimer m_orologio;
    std::unique_ptr<fmScheda> m_pagina;
    qsizetype m_atti = 0;
    int m_guasti = 0;
    int m_cambiati = 0;
    int m_passi = 0;
};

QStringList registri()
{
    QStringList codici;
    connessione().leggi(
        {QStringLiteral("SELECT Codice FROM Registri WHERE Tipo IN (9, 10, 11)"), {}, {}},
        [&](const ado::Riga &riga) {
            codici.append(riga.testo(0));
            return true;
        });
    return codici;
}

// Aperto e salvato, nessuna riga è diversa.
int senzaCambiare(Lettore &lettore)
{
    const righe::Copia prima = righe::copia(connessione());
    for (const QString &registro : registri())
        lettore.percorre(registro, false);
    const QList<Diversa> diverse = righe::differenze(prima, righe::copia(connessione()));
    qsizetype quante = 0;
    for (const auto &una : prima)
        quante += una.size();
    uscita() << lettore.atti() << " acts opened and saved, " << lettore.passi()
             << " boxes passed through, " << quante << " rows: different " << diverse.size()
             << '\n';
    righe::dice(diverse);
    return static_cast<int>(diverse.size());
}

// Quante lettere il valore ha in più in fondo: la stessa persona può essere di due atti.
int lettereInPiu(const std::pair<QString, QString> &valore)
{
    const auto inFondo = [](const QByteArray &byte) {
        int quante = 0;
        for (qsizetype i = byte.size(); i > 0 && byte.at(i - 1) == 'x'; --i)
            ++quante;
        return quante;
    };
    return inFondo(righe::byteDi(valore.second)) - inFondo(righe::byteDi(valore.first));
}

// Cambia la colonna della casella in cui si è scritto, l'ora della modifica e il legame con chi ha
// scritto; null'altro.
int cambiandoUnaCasella(Lettore &lettore)
{
    const righe::Copia prima = righe::copia(connessione());
    for (const QString &registro : registri())
        lettore.percorre(registro, true);
    QList<Diversa> diverse = righe::differenze(prima, righe::copia(connessione()));
    int cambiate = 0;
    diverse.removeIf([&](const Diversa &una) {
        if (una.prima.isEmpty() || una.dopo.isEmpty())
            return una.tabella == QStringLiteral("OperatoriContesti") && una.prima.isEmpty();
        bool soloLettere = true;
        for (auto colonna = una.colonne.cbegin(); colonna != una.colonne.cend(); ++colonna) {
            if (colonna.key() == QStringLiteral("Modifica"))
                continue;
            const int lettere = lettereInPiu(*colonna);
            cambiate += lettere;
            soloLettere = soloLettere && lettere > 0;
        }
        return soloLettere;
    });
    uscita() << lettore.cambiati() << " boxes changed by a letter, " << cambiate
             << " letters in the archive: different besides " << diverse.size() << '\n';
    righe::dice(diverse);
    return static_cast<int>(diverse.size()) + std::abs(lettore.cambiati() - cambiate);
}

int prova(const QString &percorso, int persone, quint32 seme)
{
    creaModello(percorso);
    ApriArchivio(percorso);
    connessione().Execute({QStringLiteral("PRAGMA synchronous = OFF"), {}, {}});
    attiStrani::riempie(connessione(), persone, seme);
    QElapsedTimer orologio;
    orologio.start();
    Lettore lettore(percorso, seme);
    int guasti = senzaCambiare(lettore) + cambiandoUnaCasella(lettore) + lettore.guasti();
    avviaArchivi();
    uscita() << "faults in all: " << guasti << "; " << orologio.elapsed() / 1000 << " s\n";
    return guasti == 0 ? 0 : 1;
}

} // namespace

int main(int argc, char **argv)
{
    // Senza schermo non si può dire quanto grande dev'essere una finestra, e non importa.
    qInstallMessageHandler([](QtMsgType specie, const QMessageLogContext &, const QString &testo) {
        if (specie == QtFatalMsg || !testo.startsWith(QStringLiteral("This plugin")))
            QTextStream(stderr) << testo << '\n';
    });
    QApplication applicazione(argc, argv);
    const QStringList argomenti = QApplication::arguments();
    const int persone = argomenti.value(1).toInt();
    if (persone < 1) {
        QTextStream(stderr) << "usage: giro PERSONS [SEED]\n";
        return 2;
    }
    const quint32 seme =
        argomenti.size() > 2 ? argomenti.at(2).toUInt() : QRandomGenerator::global()->generate();
    uscita() << "persons " << persone << ", seed " << seme << '\n';
    preparaApplicazione(applicazione);
    const QTemporaryDir cartella;
    try {
        return prova(cartella.filePath(QStringLiteral("strani.tvd")), persone, seme);
    } catch (const ado::Errore &errore) {
        uscita() << "FAILED: " << errore.testo() << '\n';
        return 1;
    }
}
