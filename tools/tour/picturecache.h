// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef PICTURECACHE_H
#define PICTURECACHE_H

/// Gives back the pictures that the closed windows of this process showed.
///
/// Qt's software renderer deletes a picture that nobody shows any more while it draws the next frame of any
/// window, so those of the last window would be left behind, and be reported as a leak. To be called after
/// that window is gone.
void emptyPictureCache();

#endif // PICTURECACHE_H
