if(TARGET tonadex_server_lib)
  add_executable(tonadex_server_bench server_bench.cpp)
  target_link_libraries(tonadex_server_bench
    PRIVATE tonadex_server_lib tonadex_compiler benchmark::benchmark)
endif()
