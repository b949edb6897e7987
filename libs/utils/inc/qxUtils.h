// Everything that a host may want of this library. A source that needs one thing does
// better to include the header of that.
//
// Each header tells at its top what it is, who owns what, what fails how, and what several
// threads may do. Unless it says otherwise, objects of these classes are values: they own
// what they hold, copies are independent, one object is for one thread at a time, and
// different objects may be used on different threads. Functions without an object may be
// called from any thread. Texts and pointers that are passed are borrowed for the call.
//
// Two kinds of exceptions are thrown besides those that qxException.h names: the bool value
// false where a program breaks a rule that it could have checked, and std::bad_alloc.
#pragma once

// Values, what they hold, and conversion between it: parameters that a host hands over, and
// results that it reads.
#include "qxGenericMap.h"
#include "qxGenericSet.h"
#include "qxGenericValue.h"
#include "qxHeldTypes.h"
#include "qxHolder.h"
#include "qxTypeConversion.h"
#include "qxTypes.h"

// Text, names and messages.
#include "qxFormat.h"
#include "qxLocString.h"
#include "qxScString.h"
#include "qxString.h"

// Dates, times, numbers, and what else a value can carry.
#include "qxCondition.h"
#include "qxCrc32.h"
#include "qxDate.h"
#include "qxMath.h"
#include "qxRgbColor.h"
#include "qxTime.h"
#include "qxTimestamp.h"

// Files, and the settings in them.
#include "qxBinaryBuffer.h"
#include "qxConfigReader.h"
#include "qxConfigStructure.h"
#include "qxDirectory.h"
#include "qxFile.h"

// The operating system, which a host may stand in for.
#include "qxConsole.h"
#include "qxPlatformSystem.h"
#include "qxSystem.h"

// Failures, reports and log lines.
#include "qxAssert.h"
#include "qxException.h"
#include "qxLog.h"

// Pointers to objects that are owned, counted by themselves, or counted beside; counters
// and locks.
#include "qxAutoPtr.h"
#include "qxLocks.h"
#include "qxRefPtr.h"
#include "qxSharedPtr.h"

// What is wanted of the compiler.
#include "qxCompiler.h"
#include "qxExport.h"
