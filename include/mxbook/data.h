// Data access: connections to Firebird databases, data sets over their rows,
// and the values in them.
#pragma once

#include "mxbook/data/batch.h"
#include "mxbook/data/connection.h"
#include "mxbook/data/connection_string.h"
#include "mxbook/data/data_set.h"
#include "mxbook/data/decimal.h"
#include "mxbook/data/error.h"
#include "mxbook/data/field_info.h"
#include "mxbook/data/unit_of_work.h"
#include "mxbook/data/value.h"
