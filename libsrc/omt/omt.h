// SPDX-License-Identifier: Apache-2.0
// All that reads object models and the values that they describe.
#pragma once

#include "omt/codec/codec.h"
#include "omt/codec/overlay.h"
#include "omt/codec/valueWriter.h"
#include "omt/model/read.h"
#include "omt/recording/updateDecoder.h"
#include "omt/recording/updateWriter.h"
