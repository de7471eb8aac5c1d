# SPDX-License-Identifier: MIT
# What the modules need of others: the companion and the C run time only, of which they take no memory.
#   cmake -DNM=nm -DOBJDUMP=objdump -DMODULES=a.so;b.so -P imports.cmake
foreach(module IN LISTS MODULES)
  execute_process(COMMAND "${OBJDUMP}" -p "${module}" OUTPUT_VARIABLE headers COMMAND_ERROR_IS_FATAL ANY)
  string(REGEX MATCHALL "(NEEDED|DLL Name:) +[^\n]+" libraries "${headers}")
  set(known "(lib)?ovkcore-9.0.(so|dll)|lib[cm].so.6|ld-linux-x86-64.so.2|msvcrt.dll|KERNEL32.dll")
  list(FILTER libraries EXCLUDE REGEX " (${known})$")
  if(NOT headers MATCHES " (lib)?ovkcore-9.0.(so|dll)\n" OR libraries)
    message(FATAL_ERROR "${module} needs other libraries than the companion and the C run time's: ${libraries}")
  endif()
  if(module MATCHES "so$")
    execute_process(COMMAND "${NM}" -D --undefined-only --format=posix "${module}"
      OUTPUT_VARIABLE symbols COMMAND_ERROR_IS_FATAL ANY)
    string(REGEX MATCHALL "[^\n]+" symbols "${symbols}")
    list(FILTER symbols EXCLUDE REGEX "^(mem[a-z]+|sqrt|ovk(Malloc|Free|GetMaxCacheSizeB)|__cxa_finalize)[@ ]| w ")
    if(symbols)
      message(FATAL_ERROR "${module} calls ${symbols}")
    endif()
  endif()
endforeach()
