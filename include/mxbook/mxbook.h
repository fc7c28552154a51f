// The whole public interface of mxbook.
#pragma once

#include "mxbook/conventions.h"
#include "mxbook/data.h"
#include "mxbook/date.h"
#include "mxbook/environment.h"
#include "mxbook/error.h"
#include "mxbook/fleet.h"
#include "mxbook/format.h"
#include "mxbook/host.h"
#include "mxbook/oil.h"
#include "mxbook/report.h"
#include "mxbook/operating_time.h"
#include "mxbook/remaining_life.h"
#include "mxbook/schema.h"
#include "mxbook/status.h"
#include "mxbook/text.h"
