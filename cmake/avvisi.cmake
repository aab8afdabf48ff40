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
# Un archivio può venire da chiunque: il programma che si usa si difende da ciò che scriverebbe fuori
# posto. I sanitizzatori guardano già più a fondo.
if(CMAKE_BUILD_TYPE MATCHES "^(Release|RelWithDebInfo|MinSizeRel)$" AND NOT TARVOLA_SANITIZZATORI)
  include(CheckPIESupported)
  check_pie_supported()
  set(CMAKE_POSITION_INDEPENDENT_CODE ON)
  add_compile_options(-fstack-protector-strong -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
  add_link_options(LINKER:-z,relro,-z,now)
endif()
