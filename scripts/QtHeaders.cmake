# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT

# Qt's headers, compiled once for all libraries. Not for programs, whose code is made for another kind
# of address.
file(CONFIGURE OUTPUT QtHeaders.cpp CONTENT "// Nothing but its headers.")
add_library(qt_headers OBJECT ${CMAKE_CURRENT_BINARY_DIR}/QtHeaders.cpp)
target_link_libraries(qt_headers PRIVATE project_options Qt6::Widgets)
target_precompile_headers(qt_headers PRIVATE <QElapsedTimer> <QFile> <QJsonObject> <QTimer> <QWidget>)

# @param folder whose libraries, and its folders', all use Qt
function(reuse_qt_headers folder)
  get_property(targets DIRECTORY ${folder} PROPERTY BUILDSYSTEM_TARGETS)
  foreach(target IN LISTS targets)
    get_target_property(type ${target} TYPE)
    if(type STREQUAL STATIC_LIBRARY)
      target_precompile_headers(${target} REUSE_FROM qt_headers)
      # The compiler refuses what was compiled under other definitions; these are only told, not used.
      target_compile_definitions(${target} PRIVATE QT_GUI_LIB QT_WIDGETS_LIB)
    endif()
  endforeach()
  get_property(folders DIRECTORY ${folder} PROPERTY SUBDIRECTORIES)
  foreach(each IN LISTS folders)
    reuse_qt_headers(${each})
  endforeach()
endfunction()
