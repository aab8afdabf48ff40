#pragma once

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QQueue>
#include <QTest>
#include <QTimer>

#include <functional>

// Chi siede davanti al programma: a ogni finestra modale che compare fa il passo che viene dopo.
// Una finestra per cui non c'è un passo è annotata fra le inattese e chiusa.
class Persona : public QObject
{
public:
    using Passo = std::function<void(QWidget *)>;

    Persona() { guarda(); }

    // Se vero anche l'accesso vuole il suo passo; altrimenti lo si lascia senza entrare.
    bool entra = false;
    // Se falso anche la finestra di un lavoro lungo vuole il suo passo.
    bool lasciaLavorare = true;

    void poi(const Passo &passo) { m_passi.enqueue(passo); }
    bool finita() const { return m_passi.isEmpty(); }
    const QStringList &inattese() const { return m_inattese; }

    // La prossima scatola è un messaggio con questo testo e il solo "OK".
    void avviso(const QString &testo)
    {
        risponde(testo, QMessageBox::NoIcon, {QStringLiteral("OK")}, QMessageBox::Ok,
                 QMessageBox::Ok);
    }
    // È una domanda con "Sì" e "No".
    void domanda(const QString &testo, bool si, QMessageBox::Icon icona = QMessageBox::NoIcon,
                 QMessageBox::StandardButton predefinito = QMessageBox::Yes)
    {
        risponde(testo, icona, {QStringLiteral("&Sì"), QStringLiteral("&No")}, predefinito,
                 si ? QMessageBox::Yes : QMessageBox::No);
    }
    // È un avvertimento grave con "Riprova" e "Annulla", che è il predefinito.
    void avvertimento(const QString &testo, bool riprova)
    {
        risponde(testo, QMessageBox::Critical,
                 {QStringLiteral("Riprova"), QStringLiteral("Annulla")}, QMessageBox::Cancel,
                 riprova ? QMessageBox::Retry : QMessageBox::Cancel);
    }

private:
    void risponde(const QString &testo, QMessageBox::Icon icona, const QStringList &bottoni,
                  QMessageBox::StandardButton predefinito, QMessageBox::StandardButton scelta)
    {
        poi([=](QWidget *finestra) {
            auto *scatola = qobject_cast<QMessageBox *>(finestra);
            QVERIFY2(scatola != nullptr, qUtf8Printable(finestra->objectName() +
                                                        QStringLiteral(" invece di: ") + testo));
            QCOMPARE(scatola->text(), testo);
            QCOMPARE(scatola->windowTitle(), QStringLiteral("Tarvola"));
            QCOMPARE(scatola->icon(), icona);
            QStringList suoi;
            for (const QAbstractButton *bottone : scatola->buttons())
                suoi.append(bottone->text());
            QCOMPARE(suoi, bottoni);
            QCOMPARE(scatola->standardButton(scatola->defaultButton()), predefinito);
            QTest::mouseClick(scatola->button(scelta), Qt::LeftButton);
        });
    }

    void guarda()
    {
        // Armato prima di agire: il passo può aprire un'altra finestra e restare dentro di lei.
        QTimer::singleShot(1, this, [this] { guarda(); });
        QWidget *finestra = QApplication::activeModalWidget();
        if (finestra == nullptr || !finestra->isVisible() || m_servite.contains(finestra))
            return;
        // Su una macchina lenta anche un lavoro breve mostra a che punto è: si lascia finire.
        if (lasciaLavorare && finestra->objectName() == QStringLiteral("Avanzamento"))
            return;
        const QPointer<QWidget> viva(finestra);
        m_servite.append(finestra);
        finestra->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(finestra));
        if (!entra && finestra->objectName() == QStringLiteral("fmLogin"))
            finestra->close();
        else if (!m_passi.isEmpty())
            m_passi.dequeue()(finestra);
        else
            rifiuta(finestra);
        m_servite.removeAll(viva.isNull() ? finestra : viva.data());
    }

    void rifiuta(QWidget *finestra)
    {
        auto *scatola = qobject_cast<QMessageBox *>(finestra);
        m_inattese.append(scatola != nullptr ? scatola->text() : finestra->objectName());
        if (auto *dialogo = qobject_cast<QDialog *>(finestra))
            dialogo->reject();
    }

    QQueue<Passo> m_passi;
    QList<QWidget *> m_servite;
    QStringList m_inattese;
};

// La parte di una finestra col nome dato.
template <class Parte>
Parte *parte(const QWidget *finestra, const QString &nome)
{
    auto *trovata = finestra->findChild<Parte *>(nome);
    if (trovata == nullptr)
        qFatal("manca %s in %s", qPrintable(nome), qPrintable(finestra->objectName()));
    return trovata;
}

// Batte un testo, lettere accentate comprese, un tasto per volta.
inline void batte(QWidget *dove, const QString &testo)
{
    for (const QChar lettera : testo) {
        if (lettera == u'\n') {
            QTest::keyClick(dove, Qt::Key_Return);
            continue;
        }
        for (const auto tipo : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent tasto(tipo, Qt::Key_unknown, Qt::NoModifier, QString(lettera));
            QApplication::sendEvent(dove, &tasto);
        }
    }
}

// Batte un testo in una casella, al posto di quello che c'è.
inline void compila(const QWidget *finestra, const QString &nome, const QString &testo)
{
    auto *casella = parte<QLineEdit>(finestra, nome);
    casella->setFocus();
    casella->selectAll();
    QTest::keyClick(casella, Qt::Key_Delete);
    batte(casella, testo);
}

inline void preme(const QWidget *finestra, const QString &nome)
{
    QTest::mouseClick(parte<QAbstractButton>(finestra, nome), Qt::LeftButton);
}
