# What nearly every source includes, compiled once for all targets that link to Qt Core. Sources
# still include what they use: this only makes that cheap.
add_library(quiv_precompiled OBJECT ${CMAKE_CURRENT_LIST_DIR}/precompiled.cpp)
target_link_libraries(quiv_precompiled PRIVATE Qt6::Core quiv_warnings)
target_precompile_headers(quiv_precompiled PRIVATE
  <QtCore/QByteArray> <QtCore/QCoreApplication> <QtCore/QDateTime> <QtCore/QDir> <QtCore/QFile>
  <QtCore/QHash> <QtCore/QList> <QtCore/QObject> <QtCore/QSet> <QtCore/QString> <QtCore/QTimer>
  <QtCore/QUrl> <QtCore/QVariant>
  <algorithm> <chrono> <coroutine> <cstdint> <functional> <map> <memory> <mutex> <optional>
  <stop_token> <thread> <utility> <variant> <vector>)

function(quiv_precompile)
  foreach(target IN LISTS ARGN)
    target_precompile_headers(${target} REUSE_FROM quiv_precompiled)
  endforeach()
endfunction()
