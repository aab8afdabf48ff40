// I provini: ogni finestra del programma fotografata su un archivio dato, e tutte insieme su un
// foglio solo. Il tema, il carattere e la densità sono quelli che si chiedono qui.

#include "app/avvio.h"
#include "app/fmChiudi.h"
#include "app/fmGuida.h"
#include "app/fmLogin.h"
#include "app/MDITras.h"
#include "atti/fmScheda.h"
#include "atti/fmTasti.h"
#include "browser/fmVisualizza.h"
#include "contesto/contesto.h"
#include "contesto/finestre.h"
#include "db/archivio/connessioni.h"
#include "db/atto/registro_atti.h"
#include "db/schema/generi.h"
#include "platform/elaboratore/finestra_ortografia.h"
#include "platform/finestre/avanzamento.h"
#include "platform/finestre/messaggi.h"
#include "platform/motore/recordset.h"
#include "texts/fmTxtL.h"

#include <QApplication>
#include <QDir>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPainter>
#include <QTextStream>
#include <QThread>
#include <QTimer>

#include <utility>

using namespace Qt::StringLiterals;
using namespace modTarvola;

namespace
{

struct Provino {
    QString nome;
    QImage immagine;
};

std::vector<Provino> &provini()
{
    static std::vector<Provino> tutti;
    return tutti;
}

QPalette scura()
{
    QPalette tavolozza(QColor(45, 45, 48));
    for (const auto &[ruolo, colore] : {std::pair(QPalette::Window, QColor(45, 45, 48)),
                                        {QPalette::Base, QColor(30, 30, 32)},
                                        {QPalette::AlternateBase, QColor(40, 40, 43)},
                                        {QPalette::Button, QColor(58, 58, 62)},
                                        {QPalette::Text, QColor(230, 230, 230)},
                                        {QPalette::WindowText, QColor(230, 230, 230)},
                                        {QPalette::ButtonText, QColor(230, 230, 230)},
                                        {QPalette::ToolTipBase, QColor(60, 60, 60)},
                                        {QPalette::ToolTipText, QColor(230, 230, 230)},
                                        {QPalette::Highlight, QColor(61, 174, 233)},
                                        {QPalette::HighlightedText, QColor(20, 20, 20)},
                                        {QPalette::Link, QColor(80, 170, 240)}})
        tavolozza.setColor(ruolo, colore);
    for (const QPalette::ColorRole ruolo :
         {QPalette::Text, QPalette::WindowText, QPalette::ButtonText})
        tavolozza.setColor(QPalette::Disabled, ruolo, QColor(130, 130, 130));
    return tavolozza;
}

void fotografa(QWidget &finestra, const QString &nome)
{
    for (int giro = 0; giro < 5; ++giro)
        QApplication::processEvents();
    provini().push_back({nome, finestra.grab().toImage()});
}

// Fotografa la finestra modale che si aprirà, poi la chiude.
void fotografaModale(const QString &nome)
{
    QTimer::singleShot(150, qApp, [nome] {
        if (auto *modale = qobject_cast<QDialog *>(QApplication::activeModalWidget())) {
            fotografa(*modale, nome);
            modale->reject();
        }
    });
}

void editore(const QString &nome, QWidget *sopra, const ProprietaFinestra &proprieta,
             const Etichetta &etichetta, int blocco = ado::adLockOptimistic)
{
    const auto finestra = NuovaFinestra(nome, sopra);
    if (finestra == nullptr)
        return;
    finestra->proprieta = proprieta;
    finestra->proprieta.TipoLock = blocco;
    finestra->Label2 = etichetta;
    fotografaModale(nome);
    ApriFinestra(*finestra, {});
}

void editori(QWidget *sopra)
{
    ProprietaFinestra codici;
    codici.ArchivioLocale = u"A1"_s;
    codici.RegistroLocale = u"R1"_s;
    codici.VoceLocale = u"V1"_s;
    codici.VoceLocaleTipo = 9;
    codici.IndividuoLocale = u"I1"_s;
    codici.FamigliaLocale = u"F1"_s;
    codici.TipoFamigliaLocale = 35;
    codici.EventoLocale = u"E1"_s;
    for (const char *nome : {"fmArchivio", "fmRegistro", "fmVoce", "fmIndividuo", "fmFamiglia",
                             "fmEvento", "fmLuogo", "fmRecapito", "fmOperatore"})
        editore(QString::fromLatin1(nome), sopra, codici, {u"Nascita"_s, 20});
    for (const QString &nome : {u"fmRegistro"_s, u"fmIndividuo"_s})
        editore(nome, sopra, codici, {u"Nascita"_s, 20}, ado::adLockReadOnly);
}

void ortografia()
{
    const QString testo =
        u"Galileo, figliuolo di Vincenzo Galilei, nacque addì 15 febbraio in Pisa "
        "e fu batezzato nel Duomo."_s;
    dizionario::Dizionario parole;
    Correttore correttore(testo, parole, false);
    while (correttore.avanza() && correttore.parola() != u"batezzato"_s)
        correttore.ignora(false);
    FinestraOrtografia finestra(correttore, parole);
    finestra.show();
    fotografa(finestra, u"FinestraOrtografia"_s);
}

void dialoghi(QWidget *sopra)
{
    fmVisualizza ambito(sopra);
    ambito.setWindowTitle(u"Individui in Voci"_s);
    ambito.show();
    fotografa(ambito, u"fmVisualizza"_s);
    fmChiudi chiudi(sopra);
    chiudi.show();
    fotografa(chiudi, u"fmChiudi"_s);
    contesto().TestoCampoLungo =
        u"Galileo, figlio di Vincenzo Galilei e di Giulia Ammannati, nacque a Pisa."_s;
    contesto().NomeCampoLungo = u"Battesimo di Galileo Galilei"_s;
    fmTxtL testo(sopra);
    testo.setWindowTitle(u"Testo riportato"_s);
    testo.Form_Load(u"V1"_s);
    testo.show();
    fotografa(testo, u"fmTxtL"_s);
    testo.TipoLock = ado::adLockReadOnly;
    testo.Form_Load(u"V1"_s);
    fotografa(testo, u"fmTxtL in sola lettura"_s);
    fmLogin accesso(sopra);
    accesso.show();
    fotografa(accesso, u"fmLogin"_s);
    fmTasti tasti(sopra);
    tasti.show();
    fotografa(tasti, u"fmTasti"_s);
    ortografia();
    fotografaModale(u"avanzamento"_s);
    avanzamento::compie(
        sopra, u"Copia di /archivi/pieve.tvd"_s,
        [](const avanzamento::Passo &passo) {
            for (int fatto = 0; fatto < 60 && passo(fatto, 100); ++fatto)
                QThread::msleep(10);
        },
        avanzamento::Compare::Subito);
    fotografaModale(u"messaggio"_s);
    messaggi::avverte(sopra, u"Attenzione! Il vecchio file\n/archivi/pieve.tvd\nsarà spostato "
                             "nella cartella 'Cestino'"_s);
}

// Gli elenchi uno per volta, poi tutti insieme in cascata e affiancati.
void elenchi(MDITras &principale, ProprietaTabella elenco)
{
    auto *area = principale.findChild<QMdiArea *>();
    const std::pair<const char *, int> tabelle[] = {
        {"Archivi", 0},    {"Registri", 0}, {"Voci", 0},   {"Individui", 0},
        {"Individui", 12}, {"Famiglie", 0}, {"Eventi", 0}, {"Binari", 0}};
    for (const auto &[tabella, ordinamento] : tabelle) {
        elenco.TipoTabella = QString::fromLatin1(tabella);
        elenco.Ordinamento = ordinamento;
        principale.apre(elenco);
        area->activeSubWindow()->resize(area->viewport()->size() * 3 / 4);
        fotografa(*area->activeSubWindow(), elenco.TipoTabella);
    }
    const auto aperte = area->subWindowList();
    for (int i = 0; i + 3 < aperte.size(); ++i)
        aperte.at(i)->close();
    for (const QString &comando :
         {u"Affianca in verticale"_s, u"Affianca in orizzontale"_s, u"Cascata"_s}) {
        for (QAction *azione : principale.findChildren<QAction *>()) {
            if (azione->text().remove(u'&') == comando)
                azione->trigger();
        }
        fotografa(principale, comando);
    }
}

// Le pagine: un atto per ogni tipo di registro, e uno nuovo.
void schede(QWidget *sopra, const QString &archivio)
{
    const auto pagina = [&](const QString &nome, const QString &registro, const QString &voce) {
        ProprietaScheda proprieta;
        proprieta.Percorso = archivio;
        proprieta.RegistroLocale = registro;
        proprieta.VoceLocale = voce;
        fmScheda scheda(proprieta, sopra);
        scheda.Form_Load();
        scheda.setWindowFlag(Qt::Window);
        scheda.resize(1260, 690);
        scheda.show();
        fotografa(scheda, u"fmScheda "_s + nome);
    };
    for (const int tipo : {RegistroBattesimi, RegistroMatrimoni, RegistroMorti}) {
        ado::Recordset atti;
        atti.Open(attiDiTipo(tipo), connessione(), ado::adLockReadOnly);
        if (atti.Bof())
            continue;
        pagina(QString::number(tipo), atti.Testo(u"Registro"_s), atti.Testo(u"Codice"_s));
        pagina(QString::number(tipo) + u" nuova"_s, atti.Testo(u"Registro"_s), {});
    }
}

void finestre(const QString &archivio, const QString &guida)
{
    MDITras principale;
    principale.show();
    fotografa(principale, u"MDITras vuota"_s);
    ApriArchivio(archivio);
    ProprietaTabella elenco;
    elenco.Percorso = archivio;
    elenco.ArchivioLocale = u"A1"_s;
    elenco.RegistroLocale = u"R1"_s;
    elenco.VoceLocale = u"V1"_s;
    elenchi(principale, elenco);
    editori(&principale);
    dialoghi(&principale);
    schede(&principale, archivio);
    fmGuida manuale(guida, &principale);
    manuale.vai(u"htm/inizio.htm"_s);
    manuale.show();
    fotografa(manuale, u"fmGuida"_s);
}

QImage foglio()
{
    constexpr int largo = 2400;
    constexpr int spazio = 16;
    constexpr int titolo = 22;
    std::vector<QPoint> posti;
    QPoint qui(spazio, spazio);
    int riga = 0;
    for (const Provino &provino : provini()) {
        const QSize misure = provino.immagine.size();
        if (qui.x() > spazio && qui.x() + misure.width() + spazio > largo) {
            qui = QPoint(spazio, qui.y() + riga + spazio);
            riga = 0;
        }
        posti.push_back(qui);
        qui.rx() += misure.width() + spazio;
        riga = qMax(riga, misure.height() + titolo);
    }
    QImage tutti(largo, qui.y() + riga + spazio, QImage::Format_RGB32);
    tutti.fill(QColor(90, 110, 130));
    QPainter pittore(&tutti);
    pittore.setPen(Qt::white);
    pittore.setFont(QFont(QStringLiteral("DejaVu Sans"), 10));
    for (size_t i = 0; i < posti.size(); ++i) {
        QImage immagine = provini()[i].immagine;
        immagine.setDevicePixelRatio(1);
        pittore.drawText(posti[i] + QPoint(0, titolo - 6), provini()[i].nome);
        pittore.drawImage(posti[i] + QPoint(0, titolo), immagine);
    }
    return tutti;
}

} // namespace

int main(int argc, char **argv)
{
    QApplication applicazione(argc, argv);
    const QStringList argomenti = QApplication::arguments();
    if (argomenti.size() < 4) {
        QTextStream(stderr)
            << "Usage: provini ARCHIVE.tvd GUIDE-FOLDER SHEET.png [light|dark] [POINTS]\n"
               "Writes a sheet with a picture of every window, and each by itself into the folder "
               "PROVINI where that is set. QT_SCALE_FACTOR gives the density.\n";
        return 2;
    }
    if (argomenti.value(4) == u"dark"_s)
        QApplication::setPalette(scura());
    if (argomenti.size() > 5) {
        QFont carattere = QApplication::font();
        carattere.setPointSize(argomenti.at(5).toInt());
        QApplication::setFont(carattere);
    }
    preparaApplicazione(applicazione);
    try {
        finestre(QDir().absoluteFilePath(argomenti.at(1)), argomenti.at(2));
    } catch (const ado::Errore &errore) {
        QTextStream(stderr) << errore.testo() << '\n';
        return 1;
    }
    const QString cartella = qEnvironmentVariable("PROVINI");
    for (const Provino &provino : provini()) {
        if (!cartella.isEmpty())
            provino.immagine.save(cartella + u'/' + provino.nome + u".png"_s);
    }
    return foglio().save(argomenti.at(3)) ? 0 : 1;
}
