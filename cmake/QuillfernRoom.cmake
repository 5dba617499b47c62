# The headers that most files include.
set(QUILLFERN_CORE_HEADERS <algorithm> <array> <atomic> <cmath> <cstdint> <functional> <map> <memory> <mutex> <optional> <string>
  <unordered_map> <vector> <QByteArray> <QColor> <QCoreApplication> <QDateTime> <QDir> <QFile> <QFileInfo> <QHash>
  <QImage> <QList> <QLocale> <QObject> <QPainter> <QPainterPath> <QRectF> <QSet> <QString> <QStringList> <QThread>
  <QUrl> <QVariant>)

# quillfern_room(NAME [PUBLIC lib...] [PRIVATE lib...] [WIDGETS | CORE_ONLY])
#
# The static library quillfern_NAME of all sources in the current folder but main.cpp. Libraries other than those of the
# room's headers are PRIVATE, so that nothing outside the room can include their headers. The room's headers are listed
# for CMake, which compiles each alone in the target all_verify_interface_header_sets.
function(quillfern_room name)
  cmake_parse_arguments(ROOM "WIDGETS;CORE_ONLY" "" "PUBLIC;PRIVATE" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS *.cpp *.ui)
  list(FILTER sources EXCLUDE REGEX "/main\\.cpp$")
  file(GLOB headers CONFIGURE_DEPENDS *.h)
  set(target quillfern_${name})
  add_library(${target} STATIC ${sources})
  target_sources(${target} PUBLIC FILE_SET HEADERS BASE_DIRS ${CMAKE_SOURCE_DIR}/src FILES ${headers})
  target_link_libraries(${target} PUBLIC quillfern_options ${ROOM_PUBLIC} PRIVATE ${ROOM_PRIVATE})
  if(ROOM_WIDGETS)
    quillfern_reuse_headers(${target} quillfern_pch_widgets)
  elseif(NOT ROOM_CORE_ONLY) # the precompiled headers are those of Qt Gui as well
    quillfern_reuse_headers(${target} quillfern_pch)
  endif()
endfunction()

# Lets a target begin with the headers that LIBRARY has precompiled. Parsing the headers of Qt and of the standard
# library takes three quarters of a file's time otherwise.
function(quillfern_reuse_headers target library)
  if(QUILLFERN_PRECOMPILED_HEADERS)
    target_precompile_headers(${target} REUSE_FROM ${library})
  endif()
endfunction()

# quillfern_precompile(LIBRARY HEADERS header... LIBRARIES lib...): makes a library that has precompiled the headers.
function(quillfern_precompile library)
  if(NOT QUILLFERN_PRECOMPILED_HEADERS)
    return()
  endif()
  cmake_parse_arguments(PCH "" "" "HEADERS;LIBRARIES" ${ARGN})
  file(WRITE ${CMAKE_CURRENT_BINARY_DIR}/${library}.cpp "")
  add_library(${library} OBJECT ${CMAKE_CURRENT_BINARY_DIR}/${library}.cpp)
  set_target_properties(${library} PROPERTIES AUTOMOC OFF AUTOUIC OFF AUTORCC OFF UNITY_BUILD OFF)
  target_link_libraries(${library} PRIVATE quillfern_options ${PCH_LIBRARIES})
  target_precompile_headers(${library} PRIVATE ${PCH_HEADERS})
endfunction()
