// RapidJSON, for the files that read and write JSON. It is header-only and asks Windows for nothing.
#pragma once

#include <rapidjson/document.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>
