#line 26 "docs/porting.md"
/* windows: fetches one function by its decorated name. */
#include <kxgraphic/kxgraphic.h>
#include <windows.h>

typedef uint32_t(KX_CALL* CreateBitmap)(Bitmap**, int32_t, int32_t, uint32_t, uint32_t, uint32_t, BitmapMethods*);

CreateBitmap findCreateBitmap(void) {
  const HMODULE library = LoadLibraryA("kxgraphic.dll");
  if (library == NULL) return NULL;
  return (CreateBitmap)(void*)GetProcAddress(library, "_KX_createBitmap@28");
}
