#pragma once

#include <QString>
#include <QWidget>

#include <functional>

// L'unica porta delle finestre per scegliere file e cartelle.
namespace dialoghi
{

struct SceltaFile {
    QString titolo;
    QString cartella;
    QString filtro;
    QString estensione; // aggiunta al nome nuovo che non finisce già così; vuota: nessuna
    // Chiamata prima di mostrare i file di una cartella; può non esserci.
    std::function<void(const QString &cartella)> entrando = {};
};

// Il percorso di un file che esiste; vuoto se non se ne sceglie nessuno.
QString apriFile(QWidget *sopra, const SceltaFile &scelta);
// Il percorso di un file da creare, con l'estensione; non chiede nulla se il file esiste.
QString salvaFile(QWidget *sopra, const SceltaFile &scelta);
// Una cartella; vuoto se non se ne sceglie nessuna.
QString scegliCartella(QWidget *sopra, const QString &titolo, const QString &cartella);

} // namespace dialoghi
