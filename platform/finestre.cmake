target_sources(
  tarvola_finestre
  PRIVATE platform/avanzamento.cpp platform/avanzamento.h platform/desktop.cpp platform/desktop.h
          platform/dialoghi.cpp platform/dialoghi.h platform/messaggi.cpp platform/messaggi.h)
