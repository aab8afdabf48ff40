target_sources(
  tarvola_finestre
  PRIVATE platform/a_parte.cpp platform/a_parte.h platform/avanzamento.cpp platform/avanzamento.h platform/correttore.cpp
          platform/correttore.h platform/desktop.cpp platform/desktop.h platform/dialoghi.cpp
          platform/dialoghi.h platform/dizionario.cpp platform/dizionario.h
          platform/elaboratore.cpp platform/elaboratore.h platform/finestra_ortografia.cpp
          platform/finestra_ortografia.h platform/memoria_finestre.cpp platform/memoria_finestre.h
          platform/messaggi.cpp platform/messaggi.h platform/tasti.cpp platform/tasti.h)
