#include <iostream>

#include "host/embedded_host.h"

int main() {
  EmbeddedHost host;
  Variable value;
  if (!host.Load("libTarn_base_math.so") || !host.Evaluate("return LnGamma{1, 2.5}", &value)) {
    std::cerr << host.TakeError().ToString() << '\n';
    return 1;
  }
  std::cout << value[1].GetDoubleNumb() << '\n';  // 0.284683
}
