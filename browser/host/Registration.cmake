# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT

# Sets the variables that stand in the file beside this one. What the shell would put in for $config
# and $HOME is left as it is: only the user's session can tell.
include_guard(DIRECTORY)

set(registration ${CMAKE_CURRENT_LIST_DIR}/registration)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${registration})
file(STRINGS ${registration} assignments REGEX "^[a-z_]+=")
foreach(assignment IN LISTS assignments)
  string(REGEX MATCH "^([a-z_]+)=(.+)$" assignment ${assignment})
  set(${CMAKE_MATCH_1} ${CMAKE_MATCH_2})
endforeach()
