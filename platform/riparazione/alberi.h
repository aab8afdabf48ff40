#pragma once

#include "platform/riparazione/pagine.h"

#include <QHash>
#include <QString>

#include <functional>

// Gli alberi di un file danneggiato: quali pagine sono di quale tabella o indice, e quali di
// nessuno.
namespace pagine
{

struct Albero {
    QString nome;
    QString tabella;
    Genere genere = Genere::Nessuno;
    QList<quint32> pagine; // quelle che si raggiungono, le foglie nell'ordine delle chiavi
    bool intero = true;    // falso se qualcosa non si raggiunge o non si legge
};

// Una riga dello schema di un file.
struct RigaDiSchema {
    QByteArray tipo;
    QByteArray nome;
    quint32 radice = 0;
    QByteArray testo; // l'istruzione che l'ha creata; vuota per gli indici delle chiavi
};

// Le righe dello schema che si leggono, a partire dal suo posto.
QList<RigaDiSchema> schemaDi(const File &file);
// Quelle che si leggono nelle prime pagine, anche se il loro posto è rovinato.
QList<RigaDiSchema> schemaSparso(const File &file, quint32 pagine);

class Alberi
{
public:
    // `generi`: gli alberi che il file dovrebbe avere, per nome; quelli che lo schema del file non
    // nomina restano senza pagine e non interi.
    Alberi(const File &file, const QHash<QString, Albero> &previsti);

    Albero operator[](const QString &nome) const { return m_alberi.value(nome); }
    // L'istruzione con cui lo schema del file crea la tabella; vuota se non si legge.
    QByteArray definizione(const QString &tabella) const { return m_definizioni.value(tabella); }
    // Che cosa si sa di ogni pagina; le celle lette vi segnano le pagine che le seguono.
    QList<Uso> &uso() { return m_uso; }

private:
    void radiciDa(const QList<RigaDiSchema> &righe, QHash<QString, quint32> &radici);
    QHash<QString, quint32> radici(const File &file);
    void libere(const File &file);
    void percorre(const File &file, quint32 prima, Albero &albero);

    QHash<QString, Albero> m_alberi;
    QHash<QString, QByteArray> m_definizioni;
    QList<Uso> m_uso;
};

} // namespace pagine
