#include "texts/fmTxtL.h"

#include "contesto/bozze.h"
#include "contesto/contesto.h"
#include "platform/finestre/discordia.h"
#include "platform/finestre/limite.h"
#include "platform/finestre/memoria_finestre.h"
#include "platform/finestre/messaggi.h"
#include "platform/finestre/tasti.h"
#include "texts/ortografia.h"
#include "texts/testo_proposto.h"

#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QPushButton>
#include <QScrollBar>
#include <QVBoxLayout>

using modTarvola::contesto;

namespace
{

constexpr int puntiMinimi = 6;
constexpr int puntiMassimi = 20;
constexpr int puntiPerPasso = 2;
constexpr int lunghezzaTitolo = 60;

// Le caselle, in una bozza.
const QString nomeTitolo = QStringLiteral("Titolo");
const QString nomeTesto = QStringLiteral("Testo");

// Il codice del testo; vuoto per uno nuovo.
QString recordDi(const QJsonObject &come)
{
    return come.value(QStringLiteral("codice")).toString();
}

// I punti fra cui si sceglie vanno di due in due; fra due conta il più grande, che si legge meglio.
int aPassi(int punti)
{
    const int ammessi = qBound(puntiMinimi, punti, puntiMassimi);
    return ammessi + (ammessi - puntiMinimi) % puntiPerPasso;
}

// Mentre l'elaboratore lavora la finestra principale è ridotta a icona e questa non risponde; poi
// tornano com'erano.
class DaParte
{
public:
    explicit DaParte(QWidget *finestra) : m_finestra(finestra)
    {
        QWidget *sopra = finestra;
        while (sopra->parentWidget() != nullptr)
            sopra = sopra->parentWidget();
        m_principale = qobject_cast<QMainWindow *>(sopra);
        m_finestra->setEnabled(false);
        if (m_principale == nullptr)
            return;
        m_stato = m_principale->windowState();
        m_principale->setWindowState(m_stato | Qt::WindowMinimized);
    }
    ~DaParte()
    {
        if (m_principale != nullptr)
            m_principale->setWindowState(m_stato);
        m_finestra->setEnabled(true);
        m_finestra->raise();
        m_finestra->activateWindow();
    }
    DaParte(const DaParte &) = delete;
    DaParte &operator=(const DaParte &) = delete;

private:
    QWidget *m_finestra;
    QMainWindow *m_principale = nullptr;
    Qt::WindowStates m_stato;
};

} // namespace

fmTxtL::fmTxtL(QWidget *sopra)
    : QDialog(sopra),
      Text2(new QLineEdit(this)),
      m_limiteDelTitolo(new Limite(Text2, lunghezzaTitolo)),
      Text1(new TestoProposto(this))
{
    setObjectName(QStringLiteral("fmTxtL"));
    setWindowFlag(Qt::WindowMaximizeButtonHint);
    setSizeGripEnabled(true);
    Text2->setObjectName(QStringLiteral("Text2"));
    Text1->setObjectName(QStringLiteral("Text1"));
    Text1->setAccessibleName(tr("Testo"));
    Text1->setTabChangesFocus(true);

    auto *titolo = new QFormLayout;
    auto *Label2 = new QLabel(QStringLiteral("Titolo"), this);
    Label2->setBuddy(Text2);
    titolo->addRow(Label2, Text2);
    auto *colonna = new QVBoxLayout(this);
    colonna->addLayout(titolo);
    colonna->addWidget(m_limiteDelTitolo->nota(this));
    m_vuoto = nuovaNota(this);
    colonna->addWidget(m_vuoto);
    colonna->addWidget(Text1, 1);
    colonna->addWidget(fondo());

    connect(Text1, &QPlainTextEdit::textChanged, this, [] { contesto().TestoModificato = true; });
    connect(Text2, &QLineEdit::textChanged, this, [this] {
        contesto().NomeModificato = true;
        segna();
    });
    connect(Text1->document(), &QTextDocument::modificationChanged, this, &fmTxtL::segna);
    connect(Text1, &QPlainTextEdit::textChanged, this, [this] {
        if (!m_vuoto->text().isEmpty())
            diceSeVuoto();
    });
    connect(Text2, &QLineEdit::editingFinished, this, [this] {
        if (!Text2->text().trimmed().isEmpty())
            diceSeVuoto();
    });
    resize(fontMetrics().averageCharWidth() * 90, fontMetrics().height() * 28);
    ricordaCarattere();
    memoria::ricordaFinestra(this, objectName());
}

QWidget *fmTxtL::fondo()
{
    auto *Frame1 = new QWidget(this);
    Frame1->setObjectName(QStringLiteral("Frame1"));
    Label1[0] = new QLabel(QStringLiteral("Contesto"), Frame1);
    Label1[1] = new QLabel(Frame1);
    auto *dimensione = new QLabel(tr("Dimensione del carattere"), Frame1);
    HScroll1 = new QScrollBar(Qt::Horizontal, Frame1);
    HScroll1->setObjectName(QStringLiteral("HScroll1"));
    HScroll1->setAccessibleName(dimensione->text());
    HScroll1->setFocusPolicy(Qt::TabFocus);
    HScroll1->setRange(puntiMinimi, puntiMassimi);
    HScroll1->setSingleStep(puntiPerPasso);
    HScroll1->setPageStep(puntiPerPasso);
    HScroll1->setMinimumWidth(fontMetrics().averageCharWidth() * 16);
    connect(HScroll1, &QScrollBar::valueChanged, this, &fmTxtL::cambiaDimensione);
    HScroll1->setValue(aPassi(font().pointSize()));

    creaBottoni(Frame1);
    auto *riga = new QHBoxLayout(Frame1);
    riga->setContentsMargins({});
    riga->addWidget(Label1[0]);
    riga->addWidget(Label1[1]);
    riga->addStretch();
    riga->addWidget(dimensione);
    riga->addWidget(HScroll1);
    riga->addStretch();
    riga->addWidget(Command1);
    riga->addWidget(Command2);
    riga->addWidget(Command4);
    return Frame1;
}

void fmTxtL::creaBottoni(QWidget *Frame1)
{
    Command1 = new QPushButton(QStringLiteral("&Salva"), Frame1);
    Command1->setObjectName(QStringLiteral("Command1"));
    Command2 = new QPushButton(QStringLiteral("&Controlla"), Frame1);
    Command2->setObjectName(QStringLiteral("Command2"));
    Command4 = new QPushButton(QStringLiteral("&Chiudi"), Frame1);
    Command4->setObjectName(QStringLiteral("Command4"));
    for (QPushButton *bottone : {Command1, Command2, Command4})
        bottone->setAutoDefault(false);
    connect(Command1, &QPushButton::clicked, this, &fmTxtL::salva);
    connect(Command2, &QPushButton::clicked, this,
            [this] { messaggi::protetto(this, [this] { controlla(); }); });
    tasti::assegna(this, QKeySequence::Save, Command1);
    // "Controlla" e "Chiudi" hanno la stessa lettera: i loro tasti no.
    tasti::assegna(this, Qt::Key_F7, Command2);
    tasti::assegna(this, Qt::CTRL | Qt::Key_W, Command4);
    connect(Command4, &QPushButton::clicked, this, &QDialog::accept);
}

void fmTxtL::Form_Load(const QString &proprietario)
{
    m_didascalia = windowTitle();
    Text1->setPlainText(contesto().TestoCampoLungo);
    m_limiteDelTitolo->mostra(contesto().NomeCampoLungo);
    Label1[0]->setVisible(!proprietario.isEmpty());
    Label1[1]->setText(proprietario);
    // Riempire le caselle non è modificarle, nemmeno per la barra del titolo.
    Text1->document()->setModified(false);
    contesto().TestoModificato = false;
    contesto().NomeModificato = false;
    segna();
    const bool sola = TipoLock == 1;
    Command1->setEnabled(!sola);
    Command2->setEnabled(!sola);
    Text1->setReadOnly(sola);
    Text2->setReadOnly(sola);
    Text1->setFocus();
    if (!sola && !origine.come.isEmpty())
        abbozza();
}

// Ciò che si scrive qui è tenuto da parte finché non è registrato.
void fmTxtL::abbozza()
{
    m_sorgente = new bozze::Sorgente(this, contesto().PercorsoCorrente,
                                     bozze::Sorgente::Posto::InPila, [this] { return bozza(); });
    connect(Text1, &QPlainTextEdit::textChanged, m_sorgente, &bozze::Sorgente::cambiata);
    connect(Text2, &QLineEdit::textEdited, m_sorgente, &bozze::Sorgente::cambiata);
    const auto mia = bozze::prende(objectName(), recordDi(origine.come));
    if (!mia)
        return;
    QList<discordia::Casella> cambiate;
    for (const bozze::Scritta &una : mia->caselle) {
        const bool titolo = una.nome == nomeTitolo;
        const QString nelFile = titolo ? origine.nome : origine.testo;
        if (nelFile != una.prima && nelFile != una.testo)
            cambiate.append({una.etichetta, una.testo, nelFile});
    }
    const discordia::Parole parole{
        tr("Il testo è cambiato"),
        tr("Dopo che questa bozza è stata scritta il testo è cambiato. Nulla è ancora registrato."),
        tr("Nella bozza"), tr("&Tieni la bozza"), tr("&Prendi ciò che è nel file")};
    if (!cambiate.isEmpty() &&
        discordia::chiede(parentWidget(), parole, cambiate) == discordia::Prende)
        return;
    for (const bozze::Scritta &una : mia->caselle) {
        if (una.nome == nomeTitolo)
            Text2->setText(una.testo);
        else
            Text1->setPlainText(una.testo);
    }
    m_didascalia += tr(" – bozza");
    Text1->document()->setModified(true);
    segna();
}

bozze::Finestra fmTxtL::bozza() const
{
    bozze::Finestra mia{objectName(), m_didascalia, origine.come, recordDi(origine.come), {}, {}};
    const QString testo = modTarvola::testoDi(*Text1);
    if (Text2->text() != origine.nome)
        mia.caselle.append({nomeTitolo, tr("Titolo"), Text2->text(), origine.nome});
    if (testo != origine.testo)
        mia.caselle.append({nomeTesto, tr("Testo"), testo, origine.testo});
    return mia;
}

bool fmTxtL::daSalvare() const
{
    return Text1->document()->isModified() || Text2->text() != contesto().NomeCampoLungo;
}

void fmTxtL::salva()
{
    contesto().TestoCampoLungo = modTarvola::testoDi(*Text1);
    contesto().NomeCampoLungo = Text2->text();
    m_tenuto = !contesto().TestoCampoLungo.trimmed().isEmpty();
    Text1->document()->setModified(false);
    segna();
    diceSeVuoto();
}

// "&Salva" tiene soltanto: che resti da salvare, o da chiudere perché sia registrato, si legge
// nella barra del titolo.
void fmTxtL::segna()
{
    if (daSalvare())
        setWindowTitle(tr("%1 – da salvare").arg(m_didascalia));
    else
        setWindowTitle(m_tenuto ? tr("%1 – si registra chiudendo").arg(m_didascalia)
                                : m_didascalia);
}

// Un testo vuoto non sarà registrato: lo si dice quando ci si può ancora rimediare.
void fmTxtL::diceSeVuoto()
{
    const bool vuoto = modTarvola::testoDi(*Text1).trimmed().isEmpty();
    annota(m_vuoto, vuoto && TipoLock != 1
                        ? tr("Un testo vuoto non si registra, nemmeno se ha un titolo")
                        : QString());
}

// Che l'elaboratore manchi si dice prima di mettersi da parte.
void fmTxtL::controlla()
{
    if (!modTarvola::WordTrovato(this))
        return;
    {
        const DaParte daParte(this);
        modTarvola::ControlloOrtografico(*Text1);
    }
    Text1->setFocus();
}

void fmTxtL::ricordaCarattere()
{
    const QString chiave = QStringLiteral("fmTxtL/punti");
    const QVariant punti = memoria::valore(chiave);
    if (punti.isValid())
        HScroll1->setValue(punti.toInt());
    connect(HScroll1, &QScrollBar::valueChanged, this,
            [chiave](int scelti) { memoria::ricorda(chiave, scelti); });
}

void fmTxtL::cambiaDimensione(int punti)
{
    if (punti != aPassi(punti)) {
        HScroll1->setValue(aPassi(punti));
        return;
    }
    QFont carattere = Text1->font();
    carattere.setPointSize(punti);
    Text1->setFont(carattere);
}

void fmTxtL::keyPressEvent(QKeyEvent *evento)
{
    // Esc non chiude, come negli editori: una pagina trascritta non vada perduta per sbaglio.
    if (evento->key() == Qt::Key_Escape)
        evento->accept();
    else
        QDialog::keyPressEvent(evento);
}

void fmTxtL::done(int esito)
{
    if (TipoLock == 1) {
        contesto().TestoModificato = false;
        contesto().NomeModificato = false;
    }
    // Chiudere senza "&Salva" lascia cadere ciò che è scritto: se ne tiene la bozza.
    if (m_sorgente != nullptr && daSalvare())
        m_sorgente->abbandonata();
    QDialog::done(esito);
}
