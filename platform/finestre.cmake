target_sources(
  tarvola_finestre
  PRIVATE platform/avanzamento.cpp platform/avanzamento.h platform/correttore.cpp
          platform/correttore.h platform/desktop.cpp platform/desktop.h platform/dialoghi.cpp
          platform/dialoghi.h platform/dizionario.cpp platform/dizionario.h
          platform/elaboratore.cpp platform/elaboratore.h platform/finestra_ortografia.cpp
          platform/finestra_ortografia.h platform/messaggi.cpp platform/messaggi.h)
