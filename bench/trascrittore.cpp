#include "bench/trascrittore.h"

#include "platform/lingua/giorni.h"

#include <QApplication>
#include <QComboBox>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QTest>

#include <algorithm>
#include <deque>
#include <numeric>

namespace
{

constexpr int passiAlPiu = 400;

bool eGiorno(const QWidget *parte)
{
    return parte->accessibleName().endsWith(QStringLiteral(": Data"));
}

// Una proposta si vede dal carattere.
bool proposta(const QWidget *parte)
{
    return parte->font().italic();
}

// La forma più corta in cui quel giorno si può scrivere.
QString piuCorto(const QString &iso, const QString &riferimento)
{
    const QDate giorno = QDate::fromString(iso, Qt::ISODate);
    const QDate base = QDate::fromString(riferimento, Qt::ISODate);
    QStringList forme{giorno.toString(QStringLiteral("d/M/yyyy"))};
    if (base.isValid()) {
        const auto distanza = base.daysTo(giorno);
        forme << giorno.toString(QStringLiteral("d")) << giorno.toString(QStringLiteral("d M"))
              << (distanza > 0 ? QStringLiteral("+%1") : QStringLiteral("%1")).arg(distanza);
    }
    QString corta = iso;
    for (const QString &forma : forme) {
        if (forma.size() < corta.size() && italiano::leggiGiorno(forma, riferimento) == iso)
            corta = forma;
    }
    return corta;
}

} // namespace

QString Trascrittore::mostrato(const QWidget *parte)
{
    if (const auto *riga = qobject_cast<const QLineEdit *>(parte))
        return riga->text();
    const auto *testo = qobject_cast<const QPlainTextEdit *>(parte);
    return testo == nullptr ? QString() : testo->toPlainText();
}

int Trascrittore::Conto::totale() const
{
    return std::accumulate(tasti.begin(), tasti.end(), 0);
}

void Trascrittore::manda(Qt::Key tasto, const QString &testo, Qt::KeyboardModifiers modi,
                         Specie specie)
{
    QWidget *qui = QApplication::focusWidget();
    const QString nome = qui->accessibleName();
    ++m_conto.tasti.at(specie);
    QElapsedTimer orologio;
    orologio.start();
    QTest::sendKeyEvent(QTest::Click, qui, tasto, testo, modi);
    QApplication::processEvents();
    if (specie == Testo)
        m_conto.tempi.append(static_cast<double>(orologio.nsecsElapsed()) / 1e6);
    else
        ++m_conto.caselle[nome];
}

void Trascrittore::preme(Qt::Key tasto, Specie specie, Qt::KeyboardModifiers modi)
{
    manda(tasto, tasto == Qt::Key_Return ? QStringLiteral("\r") : QString(), modi, specie);
}

void Trascrittore::batte(QChar lettera, Specie specie)
{
    if (lettera == u'\n')
        preme(Qt::Key_Return, specie);
    else
        manda(static_cast<Qt::Key>(lettera.toUpper().unicode()), lettera, Qt::NoModifier, specie);
}

// Le caselle che si vedono, come le si legge: dall'alto in basso, da sinistra a destra.
QList<QWidget *> Trascrittore::caselle() const
{
    QList<QWidget *> tutte;
    const auto figli = m_finestra->findChildren<QWidget *>();
    for (QWidget *uno : figli) {
        const bool casella = qobject_cast<QLineEdit *>(uno) != nullptr ||
                             qobject_cast<QComboBox *>(uno) != nullptr ||
                             qobject_cast<QPlainTextEdit *>(uno) != nullptr;
        if (casella && uno->isVisibleTo(m_finestra) && !uno->accessibleName().isEmpty())
            tutte.append(uno);
    }
    const auto luogo = [this](const QWidget *uno) {
        const QPoint mezzo = uno->mapTo(m_finestra, QPoint(0, uno->height() / 2));
        return std::pair(mezzo.y(), mezzo.x());
    };
    constexpr int pocoScarto = 6;
    std::stable_sort(tutte.begin(), tutte.end(), [&](const QWidget *uno, const QWidget *altro) {
        const auto suo = luogo(uno);
        const auto diAltro = luogo(altro);
        if (std::abs(suo.first - diAltro.first) > pocoScarto)
            return suo.first < diAltro.first;
        return suo.second < diAltro.second;
    });
    return tutte;
}

Trascrittore::Elenco Trascrittore::proposte() const
{
    const auto *sotto = m_finestra->findChild<QWidget *>(QStringLiteral("Completamento"));
    if (sotto == nullptr || !sotto->isVisible())
        return {};
    const auto *elenco = sotto->findChild<QListWidget *>();
    Elenco letto;
    for (int i = 0; i < elenco->count(); ++i)
        letto.voci.append(elenco->item(i)->text());
    letto.scelta = elenco->currentRow();
    return letto;
}

QString Trascrittore::attesa(const QWidget *parte) const
{
    if (qobject_cast<const QPlainTextEdit *>(parte) != nullptr)
        return parte->accessibleName() == QStringLiteral("Testo") ? m_atto.testo : QString();
    return m_atto.caselle.value(parte->accessibleName());
}

QString Trascrittore::daScrivere(const QWidget *parte) const
{
    const QString valore = attesa(parte);
    if (!eGiorno(parte) || valore.isEmpty())
        return valore;
    return piuCorto(valore, parte->accessibleName().startsWith(QStringLiteral("Atto"))
                                ? m_dataPrima
                                : m_atto.data);
}

bool Trascrittore::sbagliata(const QWidget *parte) const
{
    if (qobject_cast<const QComboBox *>(parte) != nullptr)
        return false;
    const QString valore = attesa(parte);
    const QString visto = mostrato(parte);
    if (visto == valore)
        return false;
    if (!eGiorno(parte) || valore.isEmpty())
        return true;
    const bool diAtto = parte->accessibleName().startsWith(QStringLiteral("Atto"));
    return italiano::leggiGiorno(visto, diAtto ? m_dataPrima : m_atto.data) != valore;
}

bool Trascrittore::trascrive(const serie::Atto &atto, QString &motivo)
{
    m_dataPrima = m_atto.data;
    m_atto = atto;
    m_conto = {};
    for (int passo = 0; passo < passiAlPiu; ++passo) {
        QWidget *qui = QApplication::focusWidget();
        const QList<QWidget *> tutte = caselle();
        if (!tutte.contains(qui)) {
            motivo = QStringLiteral("la tastiera non è in una casella");
            return false;
        }
        if (sbagliata(qui)) {
            corregge(qui);
        } else if (QWidget *dove = meta(tutte, qui)) {
            muove(tutte, qui, dove);
        } else {
            QSet<QString> viste;
            for (const QWidget *una : tutte)
                viste.insert(una->accessibleName());
            const QStringList volute = m_atto.caselle.keys();
            m_mancate += QSet<QString>(volute.begin(), volute.end()) - viste;
            preme(Qt::Key_Return, Comandi, Qt::ControlModifier);
            return true;
        }
    }
    motivo = QStringLiteral("la casella \"%1\" non prende ciò che vi si scrive")
                 .arg(QApplication::focusWidget()->accessibleName());
    return false;
}

void Trascrittore::corregge(QWidget *parte)
{
    if (auto *riga = qobject_cast<QLineEdit *>(parte)) {
        scrive(riga);
        return;
    }
    const QString tutto = attesa(parte);
    if (!tutto.startsWith(mostrato(parte))) {
        preme(Qt::Key_A, Testo, Qt::ControlModifier);
        preme(Qt::Key_Delete, Testo);
    }
    scriveTesto(parte, tutto);
}

void Trascrittore::scrive(QLineEdit *riga)
{
    const QString tutto = daScrivere(riga);
    const bool intera = riga->selectedText() == riga->text();
    if (!riga->text().isEmpty() && !intera && (tutto.isEmpty() || !tutto.startsWith(riga->text())))
        preme(Qt::Key_A, Battuti, Qt::ControlModifier);
    if (tutto.isEmpty()) {
        preme(Qt::Key_Delete, Battuti);
        return;
    }
    const QPointer<QWidget> qui = riga;
    for (int i = 0; i < passiAlPiu && riga->text() != tutto; ++i) {
        if (prendeProposta(riga, tutto)) {
            if (qui.isNull() || !riga->hasFocus())
                return;
            continue;
        }
        const bool nuovo = riga->hasSelectedText();
        if (!nuovo && !tutto.startsWith(riga->text()))
            preme(Qt::Key_Backspace, Battuti);
        else
            batte(tutto.at(nuovo ? 0 : riga->text().size()), Battuti);
    }
}

// Prende una proposta se costa meno che scrivere il resto: tutta con Invio, che va anche oltre, o
// una parola con la freccia. Falso se conviene scrivere.
bool Trascrittore::prendeProposta(QLineEdit *riga, const QString &tutto)
{
    const Elenco elenco = proposte();
    if (elenco.voci.isEmpty() || eGiorno(riga))
        return false;
    const qsizetype scritte = riga->hasSelectedText() ? 0 : riga->text().size();
    const qsizetype fineParola = tutto.indexOf(u' ', scritte + 1);
    const QString parola = tutto.left(fineParola < 0 ? tutto.size() : fineParola);
    // Più d'una riga sotto, la lettera seguente la porta su.
    constexpr qsizetype lontano = 1;
    for (qsizetype giu = 0; giu <= lontano; ++giu) {
        const qsizetype quale = elenco.scelta + giu;
        if (quale >= elenco.voci.size())
            break;
        const QString &voce = elenco.voci.at(quale);
        const bool intera = voce == tutto && giu < tutto.size() - scritte;
        const bool suaParola = voce == parola || (m_aParole && voce.startsWith(parola + u' '));
        if (!intera && (!suaParola || parola.size() - scritte <= giu + 1))
            continue;
        for (qsizetype i = 0; i < giu; ++i)
            preme(Qt::Key_Down, Presi);
        preme(intera ? Qt::Key_Return : Qt::Key_Right, Presi);
        if (!intera && !tutto.startsWith(riga->text()))
            m_aParole = false;
        return true;
    }
    return false;
}

// La prossima casella in cui c'è da scrivere; dopo l'ultima, una rimasta indietro.
QWidget *Trascrittore::meta(const QList<QWidget *> &tutte, const QWidget *qui) const
{
    const auto dove = std::find(tutte.begin(), tutte.end(), qui);
    const auto guarda = [this](const QWidget *una) { return sbagliata(una); };
    auto trovata = std::find_if(dove, tutte.end(), guarda);
    if (trovata == tutte.end())
        trovata = std::find_if(tutte.begin(), dove, guarda);
    return trovata == tutte.end() || *trovata == qui ? nullptr : *trovata;
}

// Dove il tabulatore dovrebbe portare: dove portò l'altra volta, o alla prima casella non proposta.
qsizetype Trascrittore::tabulatore(const QList<QWidget *> &tutte, qsizetype da) const
{
    const QWidget *qui = tutte.at(da);
    const QString solito =
        m_arrivi.value(qui->accessibleName() + (mostrato(qui).isEmpty() ? u'-' : u'+'));
    for (qsizetype i = da + 1; i < tutte.size(); ++i) {
        const QWidget *una = tutte.at(i);
        const bool arrivo = solito.isEmpty() ? !m_saltate.contains(una->accessibleName())
                                             : una->accessibleName() == solito;
        if (arrivo && !proposta(una))
            return i;
    }
    return solito.isEmpty() ? da : std::min(da + 1, tutte.size() - 1);
}

void Trascrittore::impara(const QList<QWidget *> &tutte, qsizetype da, const QString &nome)
{
    const auto arrivo = tutte.indexOf(QApplication::focusWidget());
    if (arrivo <= da)
        return;
    m_arrivi.insert(nome, tutte.at(arrivo)->accessibleName());
    m_saltate.remove(tutte.at(arrivo)->accessibleName());
    for (qsizetype i = da + 1; i < arrivo; ++i) {
        if (!proposta(tutte.at(i)))
            m_saltate.insert(tutte.at(i)->accessibleName());
    }
}

// Il primo passo della via più corta fra due caselle, col tabulatore e con le frecce.
Qt::Key Trascrittore::primoPasso(const QList<QWidget *> &tutte, qsizetype da, qsizetype a) const
{
    struct Via {
        qsizetype posto;
        Qt::Key primo;
    };
    std::deque<Via> vie{{da, Qt::Key_unknown}};
    QSet<qsizetype> viste{da};
    while (!vie.empty()) {
        const Via via = vie.front();
        vie.pop_front();
        if (via.posto == a)
            return via.primo;
        const auto prova = [&](qsizetype posto, Qt::Key tasto) {
            if (posto < 0 || posto >= tutte.size() || viste.contains(posto))
                return;
            viste.insert(posto);
            vie.push_back({posto, via.primo == Qt::Key_unknown ? tasto : via.primo});
        };
        prova(tabulatore(tutte, via.posto), Qt::Key_Tab);
        prova(via.posto - 1, Qt::Key_Backtab);
        if (qobject_cast<const QLineEdit *>(tutte.at(via.posto)) != nullptr)
            prova(via.posto + 1, Qt::Key_Down);
    }
    return a > da ? Qt::Key_Tab : Qt::Key_Backtab;
}

// Fa un passo verso la casella data; poi si guarda dove si è. Con le proposte davanti le frecce
// scelgono fra loro.
void Trascrittore::muove(const QList<QWidget *> &tutte, QWidget *qui, QWidget *dove)
{
    const auto da = tutte.indexOf(qui);
    const Qt::Key tasto = primoPasso(tutte, da, tutte.indexOf(dove));
    if (tasto == Qt::Key_Down && !proposte().voci.isEmpty()) {
        preme(Qt::Key_Escape, Comandi);
        return;
    }
    const QString nome = qui->accessibleName() + (mostrato(qui).isEmpty() ? u'-' : u'+');
    preme(tasto, Passi, tasto == Qt::Key_Backtab ? Qt::ShiftModifier : Qt::NoModifier);
    if (tasto == Qt::Key_Tab)
        impara(tutte, da, nome);
}
