#pragma once

#include "db/archivio/lettura_a_parte.h"
#include "db/formule/formulario.h"

#include <QObject>

// Ciò che i testi di un registro ripetono, letto in un filo a parte e pronto poco dopo; poi impara
// ciò che si registra.
class FormuleRegistro : public QObject
{
    Q_OBJECT

public:
    // `atto` è quello che si sta scrivendo, da cui non si impara; vuoto se è nuovo.
    FormuleRegistro(const QString &percorso, const QString &registro, const QString &atto,
                    QObject *sopra);

    // Nullo finché non si è finito di leggere, o se non si è potuto.
    const modTarvola::formule::Formulario *formulario();
    // Un atto registrato ora: s'impara appena il programma non ha altro da fare, o quando serve.
    void impara(const modTarvola::formule::Caselle &caselle, const QString &testo);

signals:
    // Si è finito di leggere; `guasto` dice perché non si è potuto, vuoto se si è potuto.
    void letto(const QString &guasto);

private:
    void imparaIlNuovo();

    modTarvola::formule::Formulario m_formulario;
    QList<std::pair<modTarvola::formule::Caselle, QString>> m_inAttesa;
    bool m_pronto = false;
    std::unique_ptr<modTarvola::LetturaAParte> m_lettura;
};
