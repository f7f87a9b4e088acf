// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/Guard.h"

#include <new>

#include "oci/mariadb/ServerFailure.h"

namespace ocimaria {

OraError CurrentException() {
  try {
    throw;
  } catch (const OraError& error) {
    return error;
  } catch (const ServerFailure& failure) {
    return ToOraError(failure);
  } catch (const std::bad_alloc&) {
    return OraError(4031, {"some"});
  } catch (const std::exception& unexpected) {
    return OraError(600, {unexpected.what()});
  }
}

}  // namespace ocimaria
