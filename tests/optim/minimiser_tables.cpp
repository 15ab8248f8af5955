// Prints the tables of docs/minimiser.md:  minimiser_tables > tables.md

#include <cstdio>

#include "collection_table.h"
#include "host/embedded_host.h"

int main() {
  const EmbeddedHost host;
  std::fputs(collection::Tables().c_str(), stdout);
  std::fprintf(stderr, "C library %016llx\n",
               static_cast<unsigned long long>(collection::LibraryFingerprint()));
}
