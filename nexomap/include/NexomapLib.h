/* SPDX-FileCopyrightText: 2026 The Tourwright developers
   SPDX-License-Identifier: MIT */

/* The panorama linking library: from panorama files to poses and links. Plain C, so that any library with
   these 24 functions can stand in for it.

   Conventions
   - One linking state per process. Calls may come from any thread, one at a time; the library locks itself.
   - Strings are zero-terminated, 8-bit, in the system's local encoding. A NAME is a panorama's identity text:
     14 characters and a terminator in 16 bytes.
   - Angles are radians, lengths metres, reals 64-bit, integers 32-bit. World frame: right-handed, z up.
     Panorama frame: x to azimuth 0, y to azimuth +pi/2, z up. A rotation is nine doubles, row by row,
     with point_world = R * point_panorama + position.
   - Every function returns 0 for success and a negative NexomapStatus for failure; the counts return the
     count. After a failure the state and the outputs are as they were before the call. */

#ifndef NEXOMAP_LIB_H
#define NEXOMAP_LIB_H

#if defined(_WIN32)
#  if defined(NEXOMAP_BUILDING)
#    define NEXOMAP_API __declspec(dllexport)
#  else
#    define NEXOMAP_API __declspec(dllimport)
#  endif
#else
#  define NEXOMAP_API __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
extern "C" {
#endif

enum NexomapStatus {
    NEXOMAP_OK = 0,
    NEXOMAP_BAD_ARGUMENT = -1,    /* null pointer, NaN, index out of range, malformed name, a length beyond
                                     1000 km */
    NEXOMAP_NOT_READY = -2,       /* NexomapInit was not called, or nodes are still being added */
    NEXOMAP_BAD_FILE = -3,        /* a file cannot be read or is damaged */
    NEXOMAP_UNKNOWN_NAME = -4,    /* no such panorama, or no such match */
    NEXOMAP_DUPLICATE = -5,       /* the panorama or match is there already */
    NEXOMAP_CANNOT_SOLVE = -6,    /* the observations do not determine a pose */
    NEXOMAP_CANNOT_WRITE = -7,    /* the working folder refuses a file */
    NEXOMAP_NO_MEMORY = -8,
    NEXOMAP_INTERNAL = -9
};

/* Starts the library. folder: where it keeps its files, must exist. reserved: 0. */
NEXOMAP_API int NexomapInit(const char* folder, int reserved);
/* Releases everything; NexomapInit starts anew. Files stay. */
NEXOMAP_API int NexomapClean(void);
/* Drops all panoramas and matches. Files stay: the program owns the working folder's cleaning. */
NEXOMAP_API int NexomapReset(void);

/* Adds one panorama and matches it with those added before; leaves the newest match picture in the folder. */
NEXOMAP_API int NexomapAddNode(const char* pno_path);
/* Ends adding: poses, links, groups, match files. */
NEXOMAP_API int NexomapFinishAddNode(void);

NEXOMAP_API int NexomapGetPanoNodeNum(void);
NEXOMAP_API int NexomapGetPanoNodeParas(char* name /* [16] */, double* position_x, double* position_y,
                                        double* position_z, double* vertex_x, double* vertex_y,
                                        double* direction, int* plan_center_x, int* plan_center_y,
                                        char* plan_name /* [256] */, int index);
NEXOMAP_API int NexomapGetPanoNodeParasB(char* name /* [16] */, double* position_x, double* position_y,
                                         double* position_z, double* rotation /* [9], row by row */,
                                         int* plan_center_x, int* plan_center_y, char* plan_name /* [256] */,
                                         int index);

NEXOMAP_API int NexomapGetPanoMatchNum(void);
/* What each value means stands with PanoLink in the program and in docs/LINKING.md. */
NEXOMAP_API int NexomapGetPanoMatchParas(char* name_0 /* [16] */, char* name_1 /* [16] */, double* rot_0,
                                         double* rot_1, double* tilt_x0, double* tilt_x1, double* tilt_y0,
                                         double* icon_y0, double* icon_y1, double* spacing, int* mode,
                                         double* reliability, int index);

/* A match made by hand: announce it, give its pairs of directions, analyse it, relocate.
   x: azimuth, y: polar angle from the upper pole. At least three pairs, not degenerate. */
NEXOMAP_API int NexomapAddPanoMatch(const char* name_0, const char* name_1);
NEXOMAP_API int NexomapAddPanoLinkPair(const char* name_0, const char* name_1, double x_0, double y_0,
                                       double x_1, double y_1);
NEXOMAP_API int NexomapAnalyzePanoMatchParas(const char* name_0, const char* name_1);
/* Computes all poses anew from the present matches. */
NEXOMAP_API int NexomapRelocateAll(void);
NEXOMAP_API int NexomapDeletePanoMatch(const char* name_0, const char* name_1);
/* Writes KEY.png into the folder, KEY = smaller name, "_", larger name. */
NEXOMAP_API int NexomapDrawPanoMatchPng(const char* name_0, const char* name_1);

/* Adds matches between panoramas that see each other by their poses and were not matched (mode 2). */
NEXOMAP_API int NexomapAutoCreatePanoMatch(void);
/* Connected components of the match graph, the largest first. */
NEXOMAP_API int NexomapGetPanoGroupNum(void);
NEXOMAP_API int NexomapGetPanoNodeNumInOneGroup(int group);
/* Merges the lidar of the largest group. indoor: 0, 1. outputs: bit 0 PTS, bit 1 binary. constant: 1.
   density: 0 low, 1 medium, 2 high. cloud_map: 1 coloured 3D cloud, 0 black-and-white plan. */
NEXOMAP_API int NexomapMergePointCloud(int indoor, int outputs, int constant, int density, int cloud_map);

/* Restore a saved tour: every node, then every match. */
NEXOMAP_API int NexomapLoadPanoNode(const char* pno_path, double position_x, double position_y,
                                    double position_z, double vertex_x, double vertex_y, double direction,
                                    int plan_center_x, int plan_center_y, const char* plan_name);
NEXOMAP_API int NexomapLoadPanoMatch(const char* name_0, const char* name_1, double rot_0, double rot_1,
                                     double tilt_x0, double tilt_x1, double tilt_y0, double icon_y0,
                                     double icon_y1, double spacing, int mode, double reliability);

/* "X.cld" to "X.tmp", and back. Lossless. */
NEXOMAP_API int NexomapDecompressPointCloudFile(const char* path);
NEXOMAP_API int NexomapCompressPointCloudFile(const char* path);

#ifdef __cplusplus
}
#endif

#endif
