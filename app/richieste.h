#pragma once

#include <QLocalServer>
#include <QObject>
#include <QStringList>
#include <QWidget>

#include <functional>

// Gli archivi che il desktop chiede di aprire. Ogni programma in funzione riceve le richieste su
// una presa locale sua, nella cartella di servizio dell'utente; chi parte con un file lo affida
// all'ultimo avviato che risponda, e altrimenti lo apre da sé.
class Richieste : public QObject
{
    Q_OBJECT

public:
    // `apre` riceve un percorso alla volta, quando nessun comando e nessuna finestra modale è in
    // corso; `finestra` viene davanti.
    Richieste(QWidget *finestra, std::function<void(const QString &)> apre);

    // Affida i percorsi, che sono assoluti, a un programma in funzione; falso se nessuno li prende.
    static bool affida(const QStringList &percorsi);
    // Comincia a ricevere. Falso se la presa non si può creare: il programma può farne a meno.
    bool ascolta();
    // Mette i percorsi in coda a quelli da aprire.
    void accoda(const QStringList &percorsi);

private:
    void riceve();
    void serve();
    void portaDavanti();

    QWidget *m_finestra;
    std::function<void(const QString &)> m_apre;
    QStringList m_attese;
    QLocalServer m_presa;
};
