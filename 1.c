#line 57 "docs/porting.md"
/* Sizes of this page. */
_Static_assert(sizeof(void*) == 4 ? sizeof(Bitmap) == 88 : sizeof(Bitmap) == 128, "Bitmap");
_Static_assert(sizeof(void*) == 4 ? sizeof(BitmapMethods) == 316 : sizeof(BitmapMethods) == 632, "BitmapMethods");
