// Names that the public documentation places apart from the rest: the idle message of modal loops.
#pragma once

#include <afxwin.h>
