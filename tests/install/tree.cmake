# SPDX-License-Identifier: MIT
# Installs into a folder, and moves it: what is installed must not depend on where.
#   cmake -DBUILD=build folder -DTHERE=folder -P tree.cmake
file(REMOVE_RECURSE "${THERE}")
execute_process(COMMAND "${CMAKE_COMMAND}" --install "${BUILD}" --prefix "${THERE}/first"
  OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
file(RENAME "${THERE}/first" "${THERE}/tree")
