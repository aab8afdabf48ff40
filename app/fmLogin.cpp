#include "app/fmLogin.h"

#include "contesto/contesto.h"
#include "contesto/finestre.h"
#include "db/archivio/connessioni.h"
#include "db/lavoro/operatori.h"
#include "editors/casella_testo.h"
#include "editors/fmOperatore.h"
#include "platform/finestre/limite.h"
#include "platform/finestre/messaggi.h"

#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

using namespace modTarvola;

namespace
{

const QString istruzioni = QStringLiteral(
    "Definendo una password ed i dati di un utente, questi saranno collegati ad ogni nuova voce "
    "creata, con il ruolo di trascrittore. Senza inserire la password i dati non faranno "
    "riferimento ad alcun utente. Per definire una password selezionare 'Nuova', sarà aperta la "
    "finestra per l'inserimento dei dati. Inserire come 'Nome utente', in questa finestra, il solo "
    "nome registrato e non il cognome.");

} // namespace

fmLogin::fmLogin(QWidget *sopra, const QString &nome) : QDialog(sopra)
{
    setObjectName(QStringLiteral("fmLogin"));
    setWindowTitle(QStringLiteral("Accesso"));
    contesto().OperatoreCorrente.clear();
    auto *Label1 = new QLabel(istruzioni, this);
    Label1->setObjectName(QStringLiteral("Label1"));
    Label1->setTextFormat(Qt::PlainText);
    Label1->setWordWrap(true);
    txtUserName = new QLineEdit(this);
    txtUserName->setObjectName(QStringLiteral("txtUserName"));
    txtPassword = new QLineEdit(this);
    txtPassword->setObjectName(QStringLiteral("txtPassword"));
    nascondeCaratteri(txtPassword);
    cmdNuova = bottone(QStringLiteral("cmdNuova"), QStringLiteral("&Nuova"), [this] {
        apreOperatore(fmOperatore::NuovoTrascrittore, {});
        // Registrarsi non è entrare: si prosegue dalle caselle.
        txtUserName->setFocus();
    });
    cmdModifica = bottone(QStringLiteral("cmdModifica"), QStringLiteral("&Modifica"), [this] {
        if (verifica(Modificare))
            apreOperatore(fmOperatore::PropriDati, m_trovato);
    });
    cmdOK = bottone(QStringLiteral("cmdOK"), QStringLiteral("&OK"), [this] {
        if (verifica(Entrare))
            accept();
    });
    cmdOK->setDefault(true);
    cmdCancel =
        bottone(QStringLiteral("cmdCancel"), QStringLiteral("&Annulla"), [this] { reject(); });
    disponi(Label1);
    txtUserName->setText(nome);
    if (!nome.isEmpty())
        txtPassword->setFocus();
}

QPushButton *fmLogin::bottone(const QString &nome, const QString &didascalia,
                              const std::function<void()> &comando)
{
    auto *nuovo = new QPushButton(didascalia, this);
    nuovo->setObjectName(nome);
    // Enter è sempre "&OK", anche dopo aver premuto un altro bottone.
    nuovo->setAutoDefault(false);
    connect(nuovo, &QPushButton::clicked, this,
            [this, comando] { messaggi::protetto(this, comando); });
    return nuovo;
}

void fmLogin::disponi(QLabel *Label1)
{
    auto *caselle = new QFormLayout;
    const QString etichette[] = {QStringLiteral("&Nome utente:"), QStringLiteral("&Password:")};
    const QStringView colonne[] = {u"Nome", u"Password"};
    int indice = 0;
    for (QLineEdit *casella : {txtUserName, txtPassword}) {
        auto *lblLabels = new QLabel(etichette[indice], this);
        lblLabels->setObjectName(QStringLiteral("lblLabels_%1").arg(indice));
        lblLabels->setBuddy(casella);
        caselle->addRow(lblLabels, casella);
        auto *limite = new Limite(casella, campoDi(u"Operatori", colonne[indice]).lunghezza);
        caselle->addRow(QString(), limite->nota(this));
        ++indice;
    }
    auto *riga = new QHBoxLayout;
    riga->addWidget(cmdNuova);
    riga->addWidget(cmdModifica);
    riga->addStretch();
    riga->addWidget(cmdOK);
    riga->addWidget(cmdCancel);
    auto *colonna = new QVBoxLayout(this);
    const int spazio = fontMetrics().height();
    colonna->setContentsMargins(spazio, spazio, spazio, spazio);
    colonna->setSpacing(spazio);
    colonna->addWidget(Label1, 1);
    colonna->addLayout(caselle);
    colonna->addLayout(riga);
    const int largo = fontMetrics().averageCharWidth() * 80;
    setMinimumWidth(largo);
    // Il testo che va a capo non dice da sé quanto è alto: con un carattere grande resterebbe
    // tagliato.
    Label1->setMinimumHeight(Label1->heightForWidth(largo - 2 * spazio));
}

bool fmLogin::verifica(Modo modo)
{
    const QString nome = txtUserName->text();
    const QString password = txtPassword->text();
    if (nome.trimmed().isEmpty() || password.trimmed().isEmpty()) {
        messaggi::avvisa(this, QStringLiteral("Inserire il nome e la password"));
        return false;
    }
    m_trovato = OperatoreCon(connessione(), nome, password);
    if (modo == Entrare)
        contesto().OperatoreCorrente = m_trovato;
    if (!m_trovato.isEmpty())
        return true;
    messaggi::avvisa(this, QStringLiteral("Password inesistente"));
    txtPassword->setFocus();
    txtPassword->selectAll();
    return false;
}

void fmLogin::apreOperatore(int tipoOperatore, const QString &operatore)
{
    const auto finestra = NuovaFinestra(QStringLiteral("fmOperatore"), this);
    finestra->proprieta.Percorso = contesto().PercorsoCorrente;
    finestra->proprieta.TipoLock = ado::adLockOptimistic;
    finestra->proprieta.TipoOperatore = tipoOperatore;
    finestra->proprieta.OperatoreLocale = operatore;
    ApriFinestra(*finestra, {});
}

void fmLogin::reject()
{
    contesto().OperatoreCorrente.clear();
    QDialog::reject();
}
