/**
 * The module's machine as a host describes it.
 */
const row = (from, event, to, action = "", guard = "") => ({ from, event, guard, action, to });
const region = (name, initial, states, ...rows) => ({ name, initial, states: [initial, ...states], rows });

export const machine = {
    machines: [
        {
            name: "PresentationPlugin_s",
            regions: [
                region(
                    "root",
                    "Unregistered_s",
                    ["Registered_s", "Starting_s", "Started_s"],
                    row("Unregistered_s", "Register_e", "Registered_s", "RegisterCallbacks_a"),
                    row("Registered_s", "Start_e", "Starting_s", "InitUI_a, StartApi_a"),
                    row("Registered_s", "Unregister_e", "Unregistered_s", "UnregisterCallbacks_a"),
                    row("Starting_s", "completion", "Started_s"),
                    row("Starting_s", "exception<ApiError_ex>", "Registered_s", "DisplayApiErrorInternal_a"),
                    row("Started_s", "Stop_e", "Registered_s", "StopApi_a, NotifyUIStopDone_a"),
                ),
            ],
        },
        {
            name: "Started_s",
            regions: [
                region(
                    "main",
                    "MainActive_s",
                    ["MainEnrolling_s", "MainUnenrolling_s"],
                    row("MainActive_s", "StatusNotification_e", "", "CacheStatusNotificationAndUpdateUI_a"),
                    row("MainActive_s", "InitiateEnrollment_e", "MainEnrolling_s"),
                    row("MainActive_s", "InitiateReEnrollment_e", "MainEnrolling_s"),
                    row("MainActive_s", "InitiateUnenrollment_e", "MainUnenrolling_s"),
                    row("MainActive_s", "PerformConfigSync_e", "", "ApiPerformConfigSync_a"),
                    row("MainEnrolling_s", "StatusNotification_e", "", "OnlyCacheStatusNotification_a", "not statusIsError"),
                    row("MainEnrolling_s", "EnrollmentDone_e", "MainActive_s", "OnlyUpdateUI_a"),
                    row("MainUnenrolling_s", "UnenrollmentDone_e", "MainActive_s", "OnlyUpdateUI_a"),
                ),
                region(
                    "enroll",
                    "EnrollIdle_s",
                    ["EnrollRequestPending_s", "EnrollStarted_s", "EnrollAuthenticating_s", "EnrollCancelPending_s", "EnrollProgress_s"],
                    row("EnrollIdle_s", "InitiateEnrollment_e", "EnrollRequestPending_s", "ApiInitiateEnrollment_a"),
                    row("EnrollIdle_s", "InitiateReEnrollment_e", "EnrollRequestPending_s", "ApiInitiateReEnrollment_a"),
                    row("EnrollRequestPending_s", "EnrollmentStatusNotification_e", "EnrollStarted_s", "DisplayEnrollmentStatus_a", "status is Started"),
                    row("EnrollRequestPending_s", "AbortEnrollment_e", "EnrollIdle_s", "DisplayEnrollmentAborted_a"),
                    row("EnrollStarted_s", "EnrollmentAuthRequest_e", "EnrollAuthenticating_s", "DisplayEnrollmentAuthRequest_a"),
                    row("EnrollStarted_s", "CancelEnrollment_e", "EnrollCancelPending_s", "ApiCancelEnrollment_a"),
                    row("EnrollStarted_s", "AbortEnrollment_e", "EnrollIdle_s", "DisplayEnrollmentAborted_a"),
                    row("EnrollAuthenticating_s", "EnrollmentAuthReply_e", "EnrollProgress_s", "ApiEnrollmentAuthReply_a"),
                    row("EnrollAuthenticating_s", "CancelEnrollment_e", "EnrollCancelPending_s", "ApiCancelEnrollment_a"),
                    row("EnrollAuthenticating_s", "AbortEnrollment_e", "EnrollIdle_s", "DisplayEnrollmentAborted_a"),
                    row("EnrollCancelPending_s", "EnrollmentStatusNotification_e", "EnrollIdle_s", "DisplayEnrollmentStatus_a", "status is not Started"),
                    row("EnrollProgress_s", "EnrollmentStatusNotification_e", "EnrollIdle_s", "DisplayEnrollmentStatus_a", "status is Complete"),
                    row("EnrollProgress_s", "CancelEnrollment_e", "EnrollCancelPending_s", "ApiCancelEnrollment_a"),
                ),
                region(
                    "dataplane_auth",
                    "DataplaneAuthIdle_s",
                    ["DataplaneAuthenticating_s"],
                    row("DataplaneAuthIdle_s", "DataplaneAuthRequest_e", "DataplaneAuthenticating_s", "DisplayDataplaneAuthRequest_a"),
                    row("DataplaneAuthenticating_s", "CancelDataplaneAuth_e", "DataplaneAuthIdle_s", "DismissDataplaneAuth_a"),
                ),
                region(
                    "unenroll",
                    "UnenrollIdle_s",
                    ["UnenrollRequestPending_s", "UnenrollStarted_s"],
                    row("UnenrollIdle_s", "InitiateUnenrollment_e", "UnenrollRequestPending_s", "ApiInitiateUnenrollment_a"),
                    row("UnenrollRequestPending_s", "AbortUnenrollment_e", "UnenrollIdle_s", "DisplayUnenrollmentAborted_a"),
                    row("UnenrollStarted_s", "UnenrollmentStatusNotification_e", "UnenrollIdle_s", "DisplayUnenrollmentStatus_a", "status is Complete"),
                    row("UnenrollRequestPending_s", "UnenrollmentStatusNotification_e", "UnenrollStarted_s", "DisplayUnenrollmentStatus_a", "status is Started"),
                ),
                region(
                    "alert",
                    "AlertIdle_s",
                    ["AlertShowingDialog_s"],
                    row("AlertIdle_s", "DetailsButtonClicked_e", "AlertShowingDialog_s", "DisplayAlertDialog_a"),
                    row("AlertShowingDialog_s", "AlertDialogDismissed_e", "AlertIdle_s", "DismissAlertDialog_a"),
                ),
            ],
        },
    ],
};

export const idle = {
    type: "machine",
    root: "Started_s",
    regions: {
        main: "MainActive_s",
        enroll: "EnrollIdle_s",
        dataplane_auth: "DataplaneAuthIdle_s",
        unenroll: "UnenrollIdle_s",
        alert: "AlertIdle_s",
    },
};

export const enrolling = {
    ...idle,
    regions: { ...idle.regions, main: "MainEnrolling_s", enroll: "EnrollAuthenticating_s" },
};
