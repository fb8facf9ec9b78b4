/** @file
 * Results of a presentation plugin's operations, for C hosts and C++ hosts alike. */
#ifndef WREN_PRESENTATION_PLUGIN_RESULT_H
#define WREN_PRESENTATION_PLUGIN_RESULT_H

/** The operations return them as 32-bit integers. */
typedef enum PresentationPluginResult {
    presentationDone = 0,                /**< it is done */
    presentationEncryptUnavailable = -1, /**< from `Encrypt` only */
    presentationNotProvided = -2,        /**< the operation is not provided by this plugin */
    presentationBufferTooSmall = -3,     /**< the required size was written back */
    presentationNullArgument = -4,       /**< a null argument of `Register` */
    presentationFailed = -10             /**< any other failure; the log explains it */
} PresentationPluginResult;

#endif
