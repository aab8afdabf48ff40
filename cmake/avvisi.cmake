# Un solo bersaglio porta gli avvisi del compilatore e i sanitizzatori a tutti.
add_library(tarvola_avvisi INTERFACE)
target_compile_options(
  tarvola_avvisi
  INTERFACE -Wall
            -Wextra
            -Wpedantic
            -Werror
            -Wconversion
            -Wshadow
            -Wnon-virtual-dtor
            -Woverloaded-virtual
            -Wold-style-cast
            -Wcast-align
            -Wformat=2
            -Wimplicit-fallthrough)
target_compile_definitions(
  tarvola_avvisi
  INTERFACE QT_NO_CAST_TO_ASCII
            QT_NO_URL_CAST_FROM_STRING
            QT_NO_FOREACH
            QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
            QT_DISABLE_DEPRECATED_BEFORE=0x060400)
if(TARVOLA_SANITIZZATORI)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=undefined
                      -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()
