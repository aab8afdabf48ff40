#include "contesto/finestre.h"

#include "contesto/contesto.h"
#include "platform/finestre/memoria_finestre.h"
#include "platform/finestre/messaggi.h"
#include "platform/finestre/testo_semplice.h"

#include <QEvent>
#include <QScreen>
#include <QStyle>

#include <algorithm>
#include <cmath>

namespace modTarvola
{

namespace
{

// Un twip è 1/1440 di pollice.
constexpr double twipPerPollice = 1440.0;
constexpr int altezzaMinimaTitolo = 18;

double twipPerPunto(const QScreen *schermo)
{
    return twipPerPollice / (schermo == nullptr ? 96.0 : schermo->logicalDotsPerInchY());
}

FabbricaFinestre &fabbricaCorrente()
{
    static FabbricaFinestre sola;
    return sola;
}

// Tiene la finestra nella pila finché è aperta, comunque la si lasci.
class PostoInPila
{
public:
    explicit PostoInPila(FinestraEditor &finestra) { FinestreAperte().push_back(&finestra); }
    ~PostoInPila()
    {
        FinestreAperte().pop_back();
        contesto().SalvataggioRifiutato = false;
    }
    PostoInPila(const PostoInPila &) = delete;
    PostoInPila &operator=(const PostoInPila &) = delete;
};

} // namespace

namespace
{

constexpr std::pair<const char *, QString ProprietaFinestra::*> testi[] = {
    {"archivio", &ProprietaFinestra::ArchivioLocale},
    {"registro", &ProprietaFinestra::RegistroLocale},
    {"voce", &ProprietaFinestra::VoceLocale},
    {"individuo", &ProprietaFinestra::IndividuoLocale},
    {"famiglia", &ProprietaFinestra::FamigliaLocale},
    {"evento", &ProprietaFinestra::EventoLocale},
    {"operatore", &ProprietaFinestra::OperatoreLocale},
    {"luogo", &ProprietaFinestra::LuogoLocale},
    {"recapito", &ProprietaFinestra::RecapitoLocale},
};
constexpr std::pair<const char *, int ProprietaFinestra::*> numeri[] = {
    {"blocco", &ProprietaFinestra::TipoLock},
    {"tipoVoce", &ProprietaFinestra::VoceLocaleTipo},
    {"tipoFamiglia", &ProprietaFinestra::TipoFamigliaLocale},
    {"tipoEvento", &ProprietaFinestra::EventoLocaleTipo},
    {"tipoOperatore", &ProprietaFinestra::TipoOperatore},
};

} // namespace

QJsonObject FinestraEditor::come() const
{
    QJsonObject tutto{{QStringLiteral("etichetta"), Label2.Caption},
                      {QStringLiteral("genere"), Label2.Tag}};
    for (const auto &[nome, campo] : testi)
        tutto.insert(QLatin1String(nome), proprieta.*campo);
    for (const auto &[nome, campo] : numeri)
        tutto.insert(QLatin1String(nome), proprieta.*campo);
    return tutto;
}

void FinestraEditor::riprende(const QJsonObject &come)
{
    Label2 = {come.value(QStringLiteral("etichetta")).toString(),
              come.value(QStringLiteral("genere")).toInt()};
    for (const auto &[nome, campo] : testi)
        proprieta.*campo = come.value(QLatin1String(nome)).toString();
    for (const auto &[nome, campo] : numeri)
        proprieta.*campo = come.value(QLatin1String(nome)).toInt();
}

FinestraEditor::FinestraEditor(const QString &nome, QWidget *sopra) : QDialog(sopra)
{
    setObjectName(nome);
}

bool FinestraEditor::event(QEvent *evento)
{
    if (evento->type() == QEvent::WindowActivate && siDispone())
        DisponiFinestre();
    return QDialog::event(evento);
}

std::vector<FinestraEditor *> &FinestreAperte()
{
    static std::vector<FinestraEditor *> pila;
    return pila;
}

bool ApriFinestra(FinestraEditor &finestra, const QString &didascalia,
                  const std::function<void()> &prima)
{
    const PostoInPila posto(finestra);
    const bool caricata = messaggi::protetto(finestra.parentWidget(), [&] {
        finestra.Form_Load();
        memoria::ricordaFinestra(&finestra, finestra.objectName());
        if (!didascalia.isEmpty())
            finestra.setWindowTitle(testo_semplice::didascalia(didascalia));
        if (prima)
            prima();
    });
    if (!caricata)
        return false;
    finestra.exec();
    // Quando un messaggio e la finestra spariscono insieme, il gestore dello schermo può lasciare
    // la tastiera a nessuno.
    if (finestra.parentWidget() != nullptr)
        finestra.parentWidget()->activateWindow();
    return true;
}

bool FinestraGiaAperta(const QString &nome, const QString &codice)
{
    const auto &pila = FinestreAperte();
    const bool aperta =
        std::any_of(pila.rbegin(), pila.rend(), [&](const FinestraEditor *finestra) {
            const QString &sua = nome == QStringLiteral("fmFamiglia")
                                     ? finestra->proprieta.FamigliaLocale
                                     : finestra->proprieta.IndividuoLocale;
            return finestra->objectName().compare(nome, Qt::CaseInsensitive) == 0 &&
                   sua.compare(codice, Qt::CaseInsensitive) == 0;
        });
    if (aperta)
        messaggi::avvisa(pila.back(), QStringLiteral("La finestra richiesta è già aperta"));
    return aperta;
}

void DisponiFinestre()
{
    const auto &pila = FinestreAperte();
    if (pila.size() < 2)
        return;
    const QScreen *schermo = pila.front()->screen();
    const QRect spazio = schermo->availableGeometry();
    const double passo = (static_cast<double>(AltezzaTitolo(4)) + 40.0) / twipPerPunto(schermo);
    int fondo = 0;
    for (size_t i = 0; i < pila.size(); ++i) {
        const int alto =
            spazio.top() + static_cast<int>(std::lround(passo * static_cast<double>(i + 1)));
        pila[i]->move(pila[i]->x(), alto);
        fondo = std::max(fondo, alto + pila[i]->frameGeometry().height());
    }
    const int libero = spazio.top() + spazio.height() - fondo;
    if (libero <= 0)
        return;
    for (FinestraEditor *finestra : pila)
        finestra->move(finestra->x(), finestra->y() + libero / 2);
}

long AltezzaTitolo(int genere)
{
    if (genere != 2 && genere != 4)
        return 0;
    QWidget *finestra = FinestreAperte().empty() ? nullptr : FinestreAperte().front();
    const QStyle *stile = finestra == nullptr ? nullptr : finestra->style();
    int punti = altezzaMinimaTitolo;
    if (stile != nullptr)
        punti = std::max(punti, stile->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, finestra));
    // La didascalia piccola è tre quarti di quella normale.
    const double altezza = genere == 2 ? punti : punti * 0.75;
    return std::lround(altezza * twipPerPunto(finestra == nullptr ? nullptr : finestra->screen()));
}

void impostaFabbrica(FabbricaFinestre fabbrica)
{
    fabbricaCorrente() = std::move(fabbrica);
}

std::unique_ptr<FinestraEditor> NuovaFinestra(const QString &nome, QWidget *sopra)
{
    return fabbricaCorrente()(nome, sopra);
}

} // namespace modTarvola
