#pragma once

#include "bench/serie.h"

#include <QHash>
#include <QPointer>
#include <QSet>
#include <QWidget>

#include <array>

class QLineEdit;

// Chi scrive una serie d'atti sulla pagina sapendo che cosa scrivere, guardando che cosa la pagina
// propone, e prendendo la via più corta. Non conosce altro che ciò che si vede: le caselle coi loro
// nomi, ciò che mostrano, l'elenco delle proposte, dove sta la tastiera.
class Trascrittore
{
public:
    enum Specie { Battuti, Presi, Passi, Comandi, Testo, Specie_quante };
    struct Conto {
        std::array<int, Specie_quante> tasti{};
        QMap<QString, int> caselle; // i tasti battuti stando in ciascuna
        int mostrate = 0;           // le volte che il testo si è proposto di continuare
        int giuste = 0;             // e il tratto era quello
        QList<double> tempi;        // di ogni tasto nel testo, in millisecondi
        int totale() const;
    };

    explicit Trascrittore(QWidget *finestra) : m_finestra(finestra) {}

    // Scrive un atto dalla prima casella fino a salvarlo; falso, e perché, se non ci riesce.
    bool trascrive(const serie::Atto &atto, QString &motivo);
    // Come si leggono le caselle di un atto nel suo testo.
    struct Letto {
        int giuste = 0;
        int sbagliate = 0;
        int vuote = 0;
        QStringList quali; // le non giuste: il nome, ciò che si vede, ciò che ci andava
    };
    // Le fa leggere in un atto nuovo, e le lascia confermate; niente se non c'è un testo.
    std::optional<Letto> leggeDalTesto(const serie::Atto &atto);
    const Conto &conto() const { return m_conto; }
    // Le caselle che il foglio non ha mostrato, e che andavano scritte.
    const QSet<QString> &mancate() const { return m_mancate; }

private:
    struct Elenco {
        QStringList voci;
        int scelta = 0;
    };

    void preme(Qt::Key tasto, Specie specie, Qt::KeyboardModifiers modi = Qt::NoModifier);
    void batte(QChar lettera, Specie specie);
    void manda(Qt::Key tasto, const QString &testo, Qt::KeyboardModifiers modi, Specie specie);
    QList<QWidget *> caselle() const;
    Elenco proposte() const;
    static QString mostrato(const QWidget *parte);
    QString attesa(const QWidget *parte) const;
    QString daScrivere(const QWidget *parte) const;
    bool sbagliata(const QWidget *parte) const;
    void corregge(QWidget *parte);
    void scrive(QLineEdit *riga);
    void scriveTesto(QWidget *testo, const QString &tutto);
    void giudica(const QWidget *testo, const QString &tutto);
    bool prendeProposta(QLineEdit *riga, const QString &tutto);
    QWidget *meta(const QList<QWidget *> &tutte, const QWidget *qui) const;
    void muove(const QList<QWidget *> &tutte, QWidget *qui, QWidget *dove);
    Qt::Key primoPasso(const QList<QWidget *> &tutte, qsizetype da, qsizetype a) const;
    qsizetype tabulatore(const QList<QWidget *> &tutte, qsizetype da) const;
    void impara(const QList<QWidget *> &tutte, qsizetype da, const QString &nome);

    QPointer<QWidget> m_finestra;
    serie::Atto m_atto;
    QString m_dataPrima;
    Conto m_conto;
    QSet<QString> m_mancate;
    QHash<QString, QString> m_arrivi; // da ogni casella, piena o vuota, dove porta il tabulatore
    QSet<QString> m_saltate;          // quelle che il tabulatore salta
    QString m_propostaDiPrima;        // ciò che si vedeva dopo il cursore al tasto di prima
    QString m_scrittoDiPrima;
    bool m_aParole = true; // la freccia prende una parola sola
};
