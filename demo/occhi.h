#pragma once

#include "demo/attesa.h"
#include "demo/passo.h"

#include <QMainWindow>
#include <QPointer>
#include <QStringList>

// Gli occhi del trascrittore: trovano le cose nella finestra che sta davanti, aspettano le
// finestre, le fotografano.
class Occhi
{
public:
    Occhi(QMainWindow &principale, QString cartella);

    // La finestra che riceve tasti e clic: un menu aperto, o la finestra modale, o la principale.
    QWidget *davanti() const;
    // L'oggetto visibile col nome dato nella finestra davanti (nel visualizzatore attivo, se è la
    // principale); lancia Guasto se non c'è.
    QWidget *cerca(const QString &nome) const;
    // Il visualizzatore attivo; nullo se non ce n'è.
    QWidget *visualizzatore() const;

    // Aspetta che davanti ci sia la finestra col nome dato, pronta.
    Attesa appare(const QString &nome) const;
    // Aspetta che il visualizzatore attivo sia quello della tabella data.
    Attesa appareElenco(const QString &tabella) const;
    // Aspetta un menu aperto o l'elenco di un combo; oppure che non ce ne siano più.
    Attesa appareMenu(const QString &titolo) const;
    Attesa spareMenu(const QString &titolo) const;
    // Aspetta il messaggio che è il testo dato, o che comincia così.
    Attesa appareMessaggio(const QString &testo, bool tutto) const;
    // Aspetta che una finestra non ci sia più, e che sia tornato chi l'aveva aperta.
    Attesa scompare(const QPointer<QWidget> &finestra, const QString &nome) const;

    // Fotografa la finestra davanti, o tutte insieme; una volta sola per nome.
    Passo fotografa(QString nome, bool tutte = false);
    // La fotografia di com'è lo schermo adesso, senza aspettare.
    void salvaImmagine(const QString &nome, bool tutte) const;
    const QStringList &fotografie() const { return m_fotografie; }

protected:
    QMainWindow &principale() const { return m_principale; }

private:
    static Attesa disegno();

    QMainWindow &m_principale;
    QString m_cartella;
    QStringList m_fotografie;
};
