// The basic suite: acquires and releases every other suite by name/version.
#ifndef SPBASIC_H
#define SPBASIC_H

#include <stddef.h>

#include <SPTypes.h>

#pragma pack(push, 8)

#ifdef __cplusplus
extern "C" {
#endif

#define kSPBasicSuite "SP Basic Suite"
#define kSPBasicSuiteVersion 4

typedef struct SPBasicSuite {
  // The out parameter is `const void**`: pass the address of a const void*
  // or cast.
  SPAPI SPErr (*AcquireSuite)(const char* name, int32 version, const void** suite);
  SPAPI SPErr (*ReleaseSuite)(const char* name, int32 version);
  SPAPI SPBoolean (*IsEqual)(const char* token1, const char* token2);
  SPAPI SPErr (*AllocateBlock)(size_t size, void** block);
  SPAPI SPErr (*FreeBlock)(void* block);
  SPAPI SPErr (*ReallocateBlock)(void* block, size_t newSize, void** newblock);
  SPAPI SPErr (*Undefined)(void);
} SPBasicSuite;

#ifdef __cplusplus
}
#endif

#pragma pack(pop)

#endif
